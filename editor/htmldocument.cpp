// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/htmldocument.h"

#include "base/aside.h"
#include "base/files.h"
#include "base/pathbelow.h"
#include "base/pathtext.h"
#include "base/resources.h"
#include "desktop/otherprograms.h"
#include "desktop/screenroom.h"
#include "desktop/windowregistry.h"
#include "editor/metasheet.h"
#include "editor/outlinemenu.h"
#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "editor/pageedits.h"
#include "editor/pagefollower.h"
#include "editor/pagesaver.h"
#include "editor/pagetools.h"
#include "editor/styleedits.h"
#include "editor/stylesheeteditor.h"
#include "editor/templatecopies.h"
#include "html/elementat.h"
#include "html/pagewriter.h"
#include "links/linksuggestions.h"
#include "page/subtreechange.h"
#include "ui_HTMLDocument.h"
#include "web/codehighlighter.h"
#include "web/viewcontroller.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QPointer>

#include <cstdio>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

HTMLDocument::HTMLDocument(PageActions::RecentPages recentPages, QWidget* parent)
    : QMainWindow(parent), m_ui(std::make_unique<Ui::HTMLDocument>())
{
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->setupUi(this);
    fitHeightToScreen(*this);
    createOutline();
    createRendering();
    createEdits();
    createStyleSheets();
    createTools();
    createSaver();
    createFollower();
    m_recovery = new PageRecovery(
        [this] {
            return UnsavedPage{{}, m_store.hasFile() ? docURL() : fs::path(), m_store.markup()};
        },
        this);
    m_actions = new PageActions({*m_ui, *this, m_store, m_rules, *m_selection, *m_outline, *m_edits, *m_saver,
                                 *m_tools, *m_viewController},
                                std::move(recentPages));
    connectChanges();
    m_layout.emplace(
        *this, *m_ui->splitView, *m_ui->sideView,
        PageLayout::Sides{m_ui->outlineAction, m_ui->attributesAction, m_ui->rulesAction, m_ui->stylesAction},
        PageLayout::Switches{m_ui->allNodesAction, m_ui->spellCheckAction});
    WindowRegistry::instance().add(this);
    WindowRegistry::instance().fill(m_ui->windowsMenu);
    updateWindow();
}

HTMLDocument::~HTMLDocument()
{
    m_stack.disconnect(this);
    m_tree.disconnect(this);
    delete m_viewController;
}

void HTMLDocument::createOutline()
{
    m_outline = new OutlineModel(m_tree, m_rules, this);
    m_outline->setActiveColour(palette().color(QPalette::Link));
    m_ui->myOutlineView->setModel(m_outline);
}

void HTMLDocument::createRendering()
{
    m_viewController = new ViewController(*this, m_ui->contentView, m_ui->infoText);
    connect(m_viewController, &ViewController::failed, this, [this](const QString& reason) {
        m_ui->noticeBar->tell(tr("The picture was not copied: %1").arg(reason));
    });
    OutlineView* const view = m_ui->myOutlineView;
    m_selection = new OutlineSelection(*view, *m_outline, *m_viewController, this);
    connect(m_selection, &OutlineSelection::selectedByUser, m_selection, &OutlineSelection::showInPage);
    connect(view, &OutlineView::doubleClicked, this, &HTMLDocument::handleDoubleClick);
    connect(view, &OutlineView::editRequested, this, &HTMLDocument::handleDoubleClick);
    connect(m_ui->elementPath, &ElementPath::chosen, view, &OutlineView::setCurrentIndex);
    connect(view, &OutlineView::menuRequested, this, &HTMLDocument::openOutlineMenu);
}

void HTMLDocument::createEdits()
{
    m_edits = new PageEdits(m_rules, m_tree, m_stack, *m_selection, *m_viewController, this);
    connect(m_edits, &PageEdits::edited, this, &HTMLDocument::refreshAfterEdit);
    connect(m_edits, &PageEdits::editedUnseen, this, [this] { refresh(RenderingReader::Place::Keep); });
    connect(m_edits, &PageEdits::redone, this, [this] { refresh(RenderingReader::Place::Caret); });
    connect(m_edits, &PageEdits::refused, m_ui->noticeBar, &NoticeBar::refuse);
    // Queued, so that the drag has ended before the page is rebuilt.
    connect(m_outline, &OutlineModel::nodeDropped, m_edits, &PageEdits::acceptDrop, Qt::QueuedConnection);
    connect(m_ui->myOutlineView, &OutlineView::pasteRequested, m_edits, &PageEdits::acceptDrop);
    m_metaSheet = new MetaSheet(this);
    connect(m_metaSheet, &MetaSheet::confirmed, m_edits, &PageEdits::changeTitle);
    connect(m_viewController, &ViewController::rowRequested, m_edits, &PageEdits::addLastRow);
}

void HTMLDocument::createStyleSheets()
{
    new CodeHighlighter(CodeHighlighter::Language::Css, m_ui->cssField);
    m_styleSheets = new StyleSheetEditor(
        {m_ui->cssMenu, m_ui->cssTabs, m_ui->cssField, m_ui->cssButton}, m_tree,
        [this] { return siteFolder(); }, this);
    connect(m_styleSheets, &StyleSheetEditor::fileStored, m_viewController, &ViewController::renewFile);
    connect(m_styleSheets, &StyleSheetEditor::styleBlockRequested, m_edits, &PageEdits::updateStyleBlock);
    connect(m_edits, &PageEdits::styleBlockUpdated, m_styleSheets, &StyleSheetEditor::selectCSS);
    connect(m_styleSheets, &StyleSheetEditor::failed, this, [this](const QString& reason) {
        m_ui->noticeBar->tell(tr("The style sheet could not be saved: %1").arg(reason));
    });
}

void HTMLDocument::createTools()
{
    m_tools = new PageTools({*m_ui, m_tree, m_stack, m_store, *m_outline, *m_selection, *m_edits,
                             *m_styleSheets, *m_viewController, [this] { return siteFolder(); },
                             [this] { return m_linkRules ? m_linkRules(m_store.linkBase()) : WebRules(); },
                             [this] { return unsavedPages(); }},
                            this);
    connect(m_tools, &PageTools::refused, m_ui->noticeBar, &NoticeBar::refuse);
    connect(m_tools, &PageTools::failed, this,
            [this](const QString& reason) { m_ui->noticeBar->tell(reason); });
    connect(m_tools, &PageTools::textsReplaced, this, [this] { refresh(RenderingReader::Place::Keep); });
    connect(m_tools, &PageTools::sourceReplaced, this, [this] {
        m_viewController->show(ViewController::Position::Keep);
        buildCSSMenu();
    });
}

QHash<QString, QByteArray> HTMLDocument::unsavedPages() const
{
    QHash<QString, QByteArray> pages;
    const SiteFolder site = siteFolder();
    for (QWidget* const window : WindowRegistry::instance().windows()) {
        const auto* const page = qobject_cast<HTMLDocument*>(window);
        if (page && page != this && page->m_store.hasFile() && !page->m_stack.isClean() &&
            site.realPath(page->docURL()))
            pages.insert(textOf(page->docURL()), QByteArray::fromStdString(page->m_store.markup()));
    }
    return pages;
}

void HTMLDocument::createSaver()
{
    m_saver = new PageSaver(this, m_store, *m_viewController, mountPath,
                            [this](const fs::path& url, const auto& then) { writeToURL(url, then); });
    connect(m_saver, &PageSaver::openRequested, this, &HTMLDocument::openRequested);
    connect(m_saver, &PageSaver::newFromRequested, this, &HTMLDocument::newFromRequested);
    connect(m_saver, &PageSaver::templateFailed, this, [this](const QString& reason) {
        m_ui->noticeBar->tell(tr("The template could not be saved. %1").arg(reason));
    });
    connect(m_saver, &PageSaver::waiting, this,
            [this](bool isWaiting) { isWaiting ? tellOfWaiting() : m_ui->noticeBar->hide(); });
    connect(m_saver, &PageSaver::saveRequested, this, [this] { saveEverything([this] { close(); }); });
    connect(m_saver, &PageSaver::discarded, this, [this] {
        m_mayClose = true;
        close();
    });
}

void HTMLDocument::createFollower()
{
    m_follower = new PageFollower(
        {m_store, m_stack, *m_selection, *m_styleSheets, *m_viewController, mountPath}, this);
    connect(m_follower, &PageFollower::fileMoved, this, [this] {
        m_watch.follow();
        updateRecovery();
        updateWindow();
        emit locationChanged(docURL());
    });
    connect(m_follower, &PageFollower::linksUpdated, this, [this] {
        if (m_ui->noticeBar->offersReload() && !m_store.changedOnDisk())
            m_ui->noticeBar->hide();
        m_watch.follow();
        updateWindow();
        m_tools->noteLinks();
    });
    connect(m_follower, &PageFollower::failed, this, [this](const QString& reason) {
        m_ui->noticeBar->tell(tr("The page's links were not updated. %1").arg(reason));
    });
}

void HTMLDocument::connectChanges()
{
    connect(m_ui->noticeBar, &NoticeBar::reloadRequested, this, &HTMLDocument::revertDocumentToSaved);
    connect(&m_watch, &PageWatch::changed, this, &HTMLDocument::takeFileChange);
    for (const auto handler : {&HTMLDocument::updateWindow, &HTMLDocument::updateRecovery}) {
        connect(&m_stack, &QUndoStack::cleanChanged, this, handler);
        connect(&m_stack, &QUndoStack::indexChanged, this, handler);
    }
    connect(m_selection, &OutlineSelection::changed, this, &HTMLDocument::updateWindow);
    connect(m_selection, &OutlineSelection::changed, m_ui->noticeBar, &NoticeBar::forgetRefusal);
    connect(&m_stack, &QUndoStack::indexChanged, m_ui->noticeBar, &NoticeBar::forgetRefusal);
    connect(m_ui->cssField, &QPlainTextEdit::textChanged, this, &HTMLDocument::updateWindow);
    connect(m_ui->cssButton, &QPushButton::clicked, this, &HTMLDocument::updateWindow);
}

// Opening

bool HTMLDocument::readFromURL(const fs::path& url)
{
    m_store.setLocation(url, PageStore::Origin::File);
    return true;
}

void HTMLDocument::windowDidLoad()
{
    if (!m_store.hasFile() && !m_template.page.empty())
        m_store.setTemplate(m_template.page, m_template.page.parent_path());
    else if (!m_store.hasFile())
        m_store.setTemplate(resourceFolder() / "LUMAHTMLCSSJS" / "duomo.html",
                            mountPath.empty() ? pathOf(QDir::homePath()) : mountPath);
    if (!m_template.folder.empty() && isFromElsewhere())
        copyTemplateFiles();
    else
        loadFirst();
    m_layout->makeRoomForTexts();
}

void HTMLDocument::loadFirst()
{
    whenFileAnswers([this] {
        if (load(Reading::First, QString()) && m_store.hasFile())
            emit locationChanged(docURL());
        m_watch.follow();
        updateWindow();
    });
}

void HTMLDocument::whenFileAnswers(const std::function<void()>& then)
{
    const auto reach = [file = PageFile(docURL())] {
        file.reach();
        return true;
    };
    if (!runAside(*this, reach, [then](bool) { then(); }))
        tellOfWaiting();
}

void HTMLDocument::tellOfWaiting()
{
    m_ui->noticeBar->tell(tr("The page's server does not answer. LUMA goes on as soon as it does."));
}

bool HTMLDocument::isFromElsewhere() const
{
    return !m_template.page.empty() && !mountPath.empty() &&
           !isAtOrBelow(m_template.page.native(), mountPath.native());
}

void HTMLDocument::copyTemplateFiles()
{
    m_ui->noticeBar->tell(tr("The files that the template uses are being copied into the site."));
    m_copies = new TemplateCopies(this);
    connect(m_copies, &TemplateCopies::copied, this, [this](const std::string& page) {
        m_store.setTemplate(m_template.page, mountPath);
        m_store.beginWith(page);
        loadFirst();
    });
    connect(m_copies, &TemplateCopies::failed, this, [this](const QString& reason) {
        loadFirst();
        m_ui->noticeBar->tell(
            tr("The files that the template uses were not copied into the site. %1").arg(reason));
    });
    m_copies->start(m_template, mountPath);
}

bool HTMLDocument::load(Reading reading, const QString& name)
{
    {
        const auto quiet = m_selection->quietly();
        if (const auto loaded = m_store.load(name); !loaded) {
            m_ui->noticeBar->tell(
                tr("This page can't be edited. %1").arg(QString::fromStdString(loaded.error().text)));
            return false;
        }
    }
    m_ui->noticeBar->hide();
    // What a page from elsewhere is to have of the site can only be shown from inside the site.
    if (reading == Reading::First && isFromElsewhere())
        m_store.placeIn(mountPath);
    if (m_unsaved)
        takeUnsaved();
    if (mountPath.empty() && m_store.hasFile())
        mountPath = m_store.folderOfLinks();
    m_viewController->show(reading == Reading::First ? ViewController::Position::Start
                                                     : ViewController::Position::Keep);
    buildCSSMenu();
    return true;
}

void HTMLDocument::takeUnsaved()
{
    const UnsavedPage unsaved = *std::exchange(m_unsaved, std::nullopt);
    if (const auto taken = m_store.recover(unsaved.source); !taken) {
        m_ui->noticeBar->tell(tr("The unsaved edits can't be brought back. %1")
                                  .arg(QString::fromStdString(taken.error().text)));
        return;
    }
    m_recovery->adopt(unsaved.record);
    updateRecovery();
    if (!m_stack.isClean())
        m_ui->noticeBar->tell(
            tr("These edits were not saved when LUMA ended. Undo shows the page without them."));
}

void HTMLDocument::revertDocumentToSaved()
{
    m_viewController->whenCaughtUp(this, [this] {
        whenFileAnswers([this] {
            if (load(Reading::Again, tr("Revert")))
                updateWindow();
        });
    });
}

void HTMLDocument::tidySource()
{
    m_viewController->whenCaughtUpWithLooks(this, [this](const ViewController::Paths& inLines) {
        m_store.setShownInLines(inLines);
        if (tidy())
            updateWindow();
    });
}

bool HTMLDocument::tidy()
{
    const int before = m_stack.index();
    {
        const auto quiet = m_selection->quietly();
        if (const auto tidied = m_store.tidy(); !tidied) {
            m_ui->noticeBar->tell(
                tr("The page could not be tidied. %1").arg(QString::fromStdString(tidied.error().text)));
            return false;
        }
    }
    if (m_stack.index() != before)
        refresh(RenderingReader::Place::Keep);
    return true;
}

void HTMLDocument::printDocument() const
{
    (void)readFile(docURL());
}

void HTMLDocument::showPlace(unsigned line, unsigned column)
{
    const html::Element* const element =
        m_tree.document() ? html::elementAt(*m_tree.document(), line, column) : nullptr;
    if (!element)
        return;
    m_selection->select(element);
    // The page may still be loading.
    m_selection->showInPageWhenShown();
}

void HTMLDocument::setTemplateFolder(const std::function<fs::path()>& folder)
{
    m_saver->setTemplateFolder(folder);
}

bool HTMLDocument::showSheetPlace(const fs::path& sheet, unsigned line, unsigned column)
{
    if (!m_styleSheets->uses(sheet))
        return false;
    m_layout->showStyleSheets();
    m_styleSheets->showPlace(sheet, line, column);
    return true;
}

void HTMLDocument::checkFile()
{
    m_watch.check();
}

void HTMLDocument::takeFileChange()
{
    m_viewController->whenCaughtUp(this, [this, known = m_store.file().knownHash()] {
        if (m_store.isSaving() || m_store.file().knownHash() != known)
            return;
        if (isEdited())
            m_ui->noticeBar->tell(
                tr("Another program has changed this page. Reload takes its version; undo brings yours "
                   "back."),
                NoticeBar::Offer::Reload);
        else
            load(Reading::Again, tr("Reload"));
    });
}

// Requests of the rendering

std::string HTMLDocument::pageMarkup()
{
    m_changes.clear();
    return m_tree.document() ? m_tree.document()->outerHtml() : std::string();
}

QString HTMLDocument::getHTML(const QString& source)
{
    if (source != QLatin1String("OutlineView"))
        return m_viewController->renderedMarkup();
    return m_tree.document() ? QString::fromStdString(m_store.markup()) : QString();
}

void HTMLDocument::setHTML(std::string_view markup, const QString& name)
{
    if (const auto taken = m_edits->takeMarkup(markup, name); !taken)
        m_ui->noticeBar->tell(
            tr("The page was not changed: %1").arg(QString::fromStdString(taken.error().text)));
    m_changes.clear();
}

bool HTMLDocument::takeChange(const SubtreeChange& change, const QString& name)
{
    const bool isTaken = m_edits->takeChange(change, name);
    m_changes.clear();
    return isTaken;
}

std::uint32_t HTMLDocument::fingerprint() const
{
    return m_tree.document() ? luma::fingerprint(*m_tree.document()) : 0;
}

PageDocument::Source HTMLDocument::source() const
{
    if (!m_tree.document())
        return {};
    html::PlacedPage page = html::patchedPage(*m_tree.document(), m_selection->node());
    return {std::move(page.text), page.place};
}

std::optional<PageDocument::Refusal> HTMLDocument::setSource(const Source& source)
{
    if (const auto taken = m_store.setMarkup(source.text); !taken)
        return Refusal{taken.error().text, html::placeOfRefusal(source.text)};
    const auto before = QString::fromUtf8(source.text.data(), static_cast<qsizetype>(source.place));
    const auto line = before.count(u'\n');
    const auto column = before.size() - (before.lastIndexOf(u'\n') + 1);
    showPlace(static_cast<unsigned>(line) + 1, static_cast<unsigned>(column) + 1);
    return {};
}

void HTMLDocument::reload()
{
    m_viewController->whenCaughtUp(this, [this] {
        if (m_tree.document())
            m_viewController->show(ViewController::Position::Keep);
    });
}

void HTMLDocument::buildCSSMenu()
{
    m_styleSheets->buildCSSMenu();
}

void HTMLDocument::loadCSSNames()
{
    loadCssNames(*m_viewController, this, m_cssNames);
}

void HTMLDocument::applyCallbackText(const QString& text)
{
    const html::Element* const element = m_selection->element();
    if (!element || !element->is("title"))
        std::puts("default case");
    else if (QString::fromStdString(element->text()) != text.simplified())
        PageCommands(m_tree, m_stack).setTitle(text);
}

void HTMLDocument::setActiveElement(const std::vector<int>& path)
{
    m_selection->setActiveElement(path);
    const html::Node* node = m_selection->element();
    while (node && !(node->asElement() && node->asElement()->is("table")))
        node = node->parent();
    m_viewController->webView()->setInTable(node != nullptr);
}

void HTMLDocument::fitWindowToPage(int width)
{
    m_layout->fitTo(width);
}

QString HTMLDocument::linkTo(const fs::path& file) const
{
    return QString::fromStdString(addressFrom(m_store.linkBase().native(), file.native()));
}

void HTMLDocument::undo()
{
    m_edits->undo();
}

void HTMLDocument::redo()
{
    m_edits->redo();
}

// Edits and the outline

void HTMLDocument::refreshAfterEdit()
{
    m_selection->showInPageWhenShown();
    refresh(RenderingReader::Place::Keep);
}

void HTMLDocument::refresh(RenderingReader::Place place)
{
    const QByteArray changes = m_changes.json();
    m_changes.clear();
    m_viewController->update(changes, place);
    m_styleSheets->updateCSSMenu();
}

void HTMLDocument::handleDoubleClick(const QModelIndex& index)
{
    const html::Element* const element = OutlineModel::elementAt(index);
    if (element && element->is("title"))
        m_metaSheet->begin(tr("Title:"), QString::fromStdString(element->text()));
}

void HTMLDocument::editTitle()
{
    if (m_tree.document())
        m_metaSheet->begin(tr("Title:"), QString::fromStdString(m_tree.document()->title()));
}

void HTMLDocument::openOutlineMenu(const QPoint& where)
{
    const auto entries = buildTagMenu(m_rules, m_selection->element(), m_cssNames.classes, m_cssNames.ids);
    if (!m_selection->node())
        return;
    auto* const menu = new OutlineMenu(entries, *m_edits, m_ui->myOutlineView);
    menu->addSeparator();
    menu->addActions({m_ui->insertMoreAction, m_ui->editMarkupAction});
    menu->popup(where);
}

// Saving

void HTMLDocument::writeToURL(const fs::path& url, const std::function<void()>& then)
{
    if (m_store.tidiesWhenSaving() && !tidy())
        return;
    const std::optional<fs::path> before = m_store.hasFile() ? std::optional(docURL()) : std::nullopt;
    m_store.startSaving(url, [this, before, then](const Result<void>& saved) {
        const bool closes = std::exchange(m_closesWhenSaved, false);
        if (!saved) {
            m_ui->noticeBar->tell(tr("The page could not be saved; your edits are kept. %1")
                                      .arg(QString::fromStdString(saved.error().text)));
            return;
        }
        noteSaved(before);
        if (then)
            then();
        else if (closes)
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
}

void HTMLDocument::noteSaved(const std::optional<fs::path>& before)
{
    m_ui->noticeBar->hide();
    m_tools->noteSaved();
    if (m_copies)
        m_copies->keep();
    m_watch.follow();
    updateWindow();
    if (before == docURL())
        return;
    emit locationChanged(docURL());
    m_viewController->show(ViewController::Position::Keep);
    buildCSSMenu();
}

bool HTMLDocument::saveToURL(const fs::path& url)
{
    bool isSaved = false;
    writeToURL(url, [&isSaved] { isSaved = true; });
    m_store.finishSaving();
    return isSaved;
}

// Closing

bool HTMLDocument::isEdited() const
{
    return StyleEdits::changePage(m_stack) || m_styleSheets->hasDrafts();
}

void HTMLDocument::closeEvent(QCloseEvent* event)
{
    event->ignore();
    if (!m_mayClose) {
        const QPointer<HTMLDocument> self = this;
        m_viewController->catchUp();
        if (!self)
            return;
        if (!m_store.finishSavingSoon()) {
            m_closesWhenSaved = true;
            tellOfWaiting();
            return;
        }
        if (isEdited()) {
            m_saver->askToSave();
            return;
        }
    }
    m_recovery->forget();
    emit windowWillClose();
    event->accept();
}

void HTMLDocument::saveEverything(const std::function<void()>& then)
{
    m_styleSheets->storeDrafts([this, then] { m_saver->save(then); });
}

// Other programs may have changed anything.
void HTMLDocument::noteReturn()
{
    checkFile();
    updateWindow();
    m_tools->noteReturn();
}

void HTMLDocument::openWith(const QString& program, const QString& mimeType)
{
    saveEverything([this, program, mimeType] {
        if (const auto opened = otherprograms::openWith(program, mimeType, {docURL()}); !opened)
            m_ui->noticeBar->tell(tr("The page could not be opened there: %1")
                                      .arg(QString::fromStdString(opened.error().text)));
    });
}

void HTMLDocument::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_tree.document())
        QMetaObject::invokeMethod(this, &HTMLDocument::noteReturn, Qt::QueuedConnection);
    if (event->type() == QEvent::PaletteChange && m_outline)
        m_outline->setActiveColour(palette().color(QPalette::Link));
}

// The window

void HTMLDocument::updateWindow()
{
    updateTitle();
    setWindowModified(isEdited());
    m_actions->update();
    m_ui->elementPath->setPath(m_selection->index());
}

void HTMLDocument::updateTitle()
{
    QString title = m_saver->name();
    std::vector<HTMLDocument*> namesakes;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        auto* const page = qobject_cast<HTMLDocument*>(window);
        if (page && page != this && page->isVisible() && m_store.hasFile() && page->m_store.hasFile() &&
            page->docURL().filename() == docURL().filename())
            namesakes.push_back(page);
    }
    if (!namesakes.empty())
        title += QStringLiteral(" \u2013 ") + textOf(docURL().parent_path());
    title += QStringLiteral("[*]");
    if (title != windowTitle()) {
        setWindowTitle(title);
        for (HTMLDocument* const page : namesakes)
            page->updateWindow();
    }
}

void HTMLDocument::updateRecovery()
{
    if (!m_stack.isClean())
        m_recovery->keep();
    else if (m_store.hasPage())
        m_recovery->forget();
}

} // namespace luma
