#include "editor/htmldocument.h"

#include "editor/classedits.h"
#include "editor/codehighlighter.h"
#include "editor/cssmenu.h"
#include "editor/elementdrop.h"
#include "editor/metasheet.h"
#include "editor/outlinemodel.h"
#include "editor/pagesplit.h"
#include "editor/scriptcall.h"
#include "editor/scriptquote.h"
#include "editor/stylesheeteditor.h"
#include "editor/viewcontroller.h"
#include "html/parse.h"
#include "links/linkrules.h"
#include "platform/icons.h"
#include "platform/resources.h"
#include "platform/windowregistry.h"
#include "ui_HTMLDocument.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDataStream>
#include <QFile>
#include <QFileDialog>
#include <QFileSystemWatcher>
#include <QMessageBox>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScreen>
#include <QToolButton>

#include <cstdio>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr double zoomStep = 1.1;

QString textOf(const fs::path& path)
{
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

fs::path pathOf(const QString& text)
{
    return QFile::encodeName(text).toStdString();
}

QString nameFilter()
{
    return HTMLDocument::tr("Pages (*.html *.xhtml *.xml);;All files (*)");
}

/// The way down to an element, as the foot of the window shows it.
QString pathText(const html::Element& element)
{
    QStringList names;
    for (const html::Element* each = &element; each; each = each->parent()->asElement()) {
        const std::string id(each->attr("id"));
        const QString name = tagNameOf(*each);
        names.prepend(id.empty() ? name : name + u'#' + QString::fromStdString(id));
    }
    return names.join(QStringLiteral(" \u203a "));
}

} // namespace

HTMLDocument::HTMLDocument(Services services, QWidget* parent)
    : QMainWindow(parent), m_ui(std::make_unique<Ui::HTMLDocument>()), m_services(std::move(services))
{
    setAttribute(Qt::WA_DeleteOnClose);
    m_ui->setupUi(this);
    m_ui->noticeBar->hide();
    m_metaSheet = new MetaSheet(this);
    m_watcher = new QFileSystemWatcher(this);
    createOutline();
    createRendering();
    createStyleSheets();
    createFormatBar();
    connectFileMenu();
    connectEditMenu();
    connectViewMenu();
    connectChanges();
    for (QWidget* side : {m_ui->outlinePane, m_ui->stylePane}) {
        side->setMinimumWidth(pagesplit::narrowestSide);
        side->setMaximumWidth(pagesplit::widestSide);
    }
    m_ui->splitView->setStretchFactor(1, 1);
    m_ui->splitView->setSizes({pagesplit::widestSide, width(), pagesplit::widestSide});
    WindowRegistry::instance().add(this);
    WindowRegistry::instance().fill(m_ui->windowsMenu);
    updateTitle();
    updateActions();
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
    OutlineView* const view = m_ui->myOutlineView;
    view->setModel(m_outline);
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &HTMLDocument::outlineViewSelectionDidChange);
    connect(view, &OutlineView::doubleClicked, this, &HTMLDocument::handleDoubleClick);
    connect(view, &OutlineView::editWanted, this, &HTMLDocument::handleDoubleClick);
    connect(view, &OutlineView::deleteWanted, this, &HTMLDocument::deleteTag);
    connect(view, &OutlineView::menuWanted, this, &HTMLDocument::menuWillOpen);
    // Queued, so that the drag is over before the page is built anew.
    connect(m_outline, &OutlineModel::elementDropped, this, &HTMLDocument::acceptDrop, Qt::QueuedConnection);
    auto* const menu = new QMenu(tr("Insert"), m_ui->addTagButton);
    menu->setObjectName(QStringLiteral("addTagMenu"));
    m_ui->addTagButton->setMenu(menu);
    m_ui->addTagButton->setIcon(icons::symbol(QStringLiteral("add")));
    m_ui->deleteTagButton->setIcon(icons::symbol(QStringLiteral("delete")));
    connect(m_ui->deleteTagButton, &QPushButton::clicked, this, &HTMLDocument::deleteTag);
}

void HTMLDocument::createRendering()
{
    m_viewController = new ViewController(*this, m_ui->contentView, m_ui->infoText);
    connect(&m_viewController->webView()->editorPage(), &EditorPage::shown, this, [this] {
        if (std::exchange(m_selectsWhenShown, false))
            showSelectionInPage();
    });
}

void HTMLDocument::createStyleSheets()
{
    new CodeHighlighter(CodeHighlighter::Language::Css, m_ui->cssField->document());
    m_styleSheets = new StyleSheetEditor(
        {m_ui->cssMenu, m_ui->cssField, m_ui->cssButton}, m_tree, [this] { return siteFolder(); },
        m_services.runShell, this);
    connect(m_styleSheets, &StyleSheetEditor::fileStored, this, &HTMLDocument::reload);
    connect(m_styleSheets, &StyleSheetEditor::styleBlockWanted, this, &HTMLDocument::updateStyleBlock);
    connect(m_styleSheets, &StyleSheetEditor::failed, this, [this](const QString& reason) {
        showNotice(tr("The style sheet could not be saved: %1").arg(reason), false);
    });
}

void HTMLDocument::createFormatBar()
{
    QToolBar& bar = *m_ui->formatBar;
    const std::pair<QAction*, const char*> commands[] = {
        {m_ui->boldAction, "bold"}, {m_ui->italicAction, "italic"}, {m_ui->underlineAction, "underline"}};
    for (const auto& [action, icon] : commands) {
        action->setIcon(icons::symbol(QString::fromLatin1(icon)));
        connect(action, &QAction::triggered, m_viewController,
                [this, action = action] { m_viewController->formatText(action); });
        bar.addAction(action);
    }
    const std::pair<QMenu*, const char*> menus[] = {{m_viewController->fontSubMenu(), "text-style"},
                                                    {m_viewController->justificationSubMenu(), "justify"}};
    for (const auto& [menu, icon] : menus) {
        menu->setIcon(icons::symbol(QString::fromLatin1(icon)));
        connect(menu, &QMenu::aboutToShow, m_viewController->webView(), &MyWebView::updateMenuMarks);
        auto* const button = new QToolButton(&bar);
        button->setObjectName(menu->objectName() + QStringLiteral("Button"));
        button->setAccessibleName(menu->title());
        button->setToolTip(menu->title());
        button->setIcon(menu->icon());
        button->setPopupMode(QToolButton::InstantPopup);
        button->setMenu(menu);
        bar.addWidget(button);
        m_ui->formatMenu->addMenu(menu);
    }
    bar.addSeparator();
    m_ui->formatMenu->addSeparator();
    m_ui->formatMenu->addActions({m_ui->boldAction, m_ui->italicAction, m_ui->underlineAction});
    m_ui->formatMenu->addSeparator();
    m_ui->makeLinkAction->setIcon(icons::symbol(QStringLiteral("link")));
    m_ui->insertImageAction->setIcon(icons::symbol(QStringLiteral("image")));
    m_ui->showSourceAction->setIcon(icons::symbol(QStringLiteral("script")));
    m_ui->reloadAction->setIcon(icons::symbol(QStringLiteral("reload")));
    bar.addActions({m_ui->makeLinkAction, m_ui->insertImageAction});
    bar.addSeparator();
    bar.addActions({m_ui->showSourceAction, m_ui->reloadAction});
    m_ui->formatMenu->addActions(
        {m_ui->makeLinkAction, m_ui->editLinkAction, m_ui->removeLinkAction, m_ui->insertImageAction});
    connect(m_ui->makeLinkAction, &QAction::triggered, m_viewController, &ViewController::makeLink);
    connect(m_ui->editLinkAction, &QAction::triggered, m_viewController, &ViewController::editLink);
    connect(m_ui->removeLinkAction, &QAction::triggered, m_viewController, &ViewController::removeLink);
    connect(m_ui->insertImageAction, &QAction::triggered, m_viewController, &ViewController::insertImage);
}

void HTMLDocument::connectFileMenu()
{
    connect(m_ui->newAction, &QAction::triggered, this, &HTMLDocument::newRequested);
    connect(m_ui->openAction, &QAction::triggered, this, &HTMLDocument::openPanel);
    connect(m_ui->openRecentMenu, &QMenu::aboutToShow, this, &HTMLDocument::fillRecentMenu);
    connect(m_ui->saveAction, &QAction::triggered, this, [this] { save({}); });
    connect(m_ui->saveAsAction, &QAction::triggered, this, [this] { saveAs({}); });
    connect(m_ui->revertAction, &QAction::triggered, this, &HTMLDocument::revertDocumentToSaved);
    connect(m_ui->closeAction, &QAction::triggered, this, &HTMLDocument::close);
    connect(m_ui->noticeReloadButton, &QPushButton::clicked, this, &HTMLDocument::revertDocumentToSaved);
    connect(m_ui->noticeCloseButton, &QPushButton::clicked, m_ui->noticeBar, &QWidget::hide);
    connect(m_watcher, &QFileSystemWatcher::fileChanged, this, &HTMLDocument::checkFile);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, &HTMLDocument::checkFile);
}

void HTMLDocument::connectEditMenu()
{
    connect(m_ui->undoAction, &QAction::triggered, this, &HTMLDocument::undo);
    connect(m_ui->redoAction, &QAction::triggered, this, &HTMLDocument::redo);
    connect(m_ui->cutAction, &QAction::triggered, this, [this] { sendToFocus("cut", QWebEnginePage::Cut); });
    connect(m_ui->copyAction, &QAction::triggered, this,
            [this] { sendToFocus("copy", QWebEnginePage::Copy); });
    connect(m_ui->pasteAction, &QAction::triggered, this,
            [this] { sendToFocus("paste", QWebEnginePage::Paste); });
    connect(m_ui->selectAllAction, &QAction::triggered, this,
            [this] { sendToFocus("selectAll", QWebEnginePage::SelectAll); });
    connect(m_ui->insertMenu, &QMenu::aboutToShow, this, [this] { fillInsertMenu(m_ui->insertMenu); });
    connect(m_ui->deleteTagAction, &QAction::triggered, this, &HTMLDocument::deleteTag);
    connect(m_ui->pageTitleAction, &QAction::triggered, this, &HTMLDocument::editTitle);
    connect(m_metaSheet, &MetaSheet::confirmed, this, &HTMLDocument::changeTitle);
}

void HTMLDocument::connectViewMenu()
{
    connect(m_ui->reloadAction, &QAction::triggered, this, &HTMLDocument::reload);
    connect(m_ui->showSourceAction, &QAction::triggered, m_viewController, &ViewController::showSource);
    connect(m_ui->scriptConsoleAction, &QAction::triggered, m_viewController,
            &ViewController::showScriptConsole);
    connect(m_ui->inspectElementAction, &QAction::triggered, m_viewController,
            &ViewController::inspectElement);
    connect(m_ui->zoomInAction, &QAction::triggered, this, [this] { zoom(m_magnification * zoomStep); });
    connect(m_ui->zoomOutAction, &QAction::triggered, this, [this] { zoom(m_magnification / zoomStep); });
    connect(m_ui->actualSizeAction, &QAction::triggered, this, [this] { zoom(1); });
}

void HTMLDocument::connectChanges()
{
    connect(&m_stack, &QUndoStack::cleanChanged, this, &HTMLDocument::updateTitle);
    connect(&m_stack, &QUndoStack::indexChanged, this, &HTMLDocument::updateActions);
    connect(m_ui->cssField, &QPlainTextEdit::textChanged, this, &HTMLDocument::updateTitle);
    connect(m_ui->cssButton, &QPushButton::clicked, this, &HTMLDocument::updateTitle);
}

// Opening

bool HTMLDocument::readFromURL(const fs::path& url)
{
    m_store.setLocation(url, PageStore::Origin::File);
    return true;
}

void HTMLDocument::windowDidLoad()
{
    if (!m_store.hasFile())
        m_store.setLocation(resourceFolder() / "LUMAHTMLCSSJS" / "duomo.html", PageStore::Origin::Template);
    if (load(Reading::First, QString()) && m_store.hasFile())
        emit locationChanged(docURL());
    watchFile();
    updateTitle();
    updateActions();
}

bool HTMLDocument::load(Reading reading, const QString& name)
{
    {
        const QScopedValueRollback quiet(m_quiet, true);
        if (const auto loaded = m_store.load(name); !loaded) {
            showNotice(tr("This page can't be edited. %1").arg(QString::fromStdString(loaded.error().text)),
                       false);
            return false;
        }
    }
    m_ui->noticeBar->hide();
    m_styleSheets->dropDrafts();
    m_viewController->show(reading == Reading::First ? ViewController::Position::Start
                                                     : ViewController::Position::Keep);
    buildCSSMenu();
    updateTagControls();
    return true;
}

void HTMLDocument::revertDocumentToSaved()
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    if (self && load(Reading::Again, tr("Revert")))
        updateTitle();
}

void HTMLDocument::checkFile()
{
    watchFile();
    if (!m_store.changedOnDisk())
        return;
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    if (!self)
        return;
    if (isEdited())
        showNotice(tr("Another program has changed this page. Reload takes its version; undo brings yours "
                      "back."),
                   true);
    else
        load(Reading::Again, tr("Reload"));
}

// Files that are replaced come under a new inode, so the folder is watched too.
void HTMLDocument::watchFile()
{
    if (!m_store.hasFile())
        return;
    const QStringList wanted = {textOf(docURL()), textOf(docURL().parent_path())};
    const QStringList watched = m_watcher->files() + m_watcher->directories();
    for (const QString& path : watched) {
        if (!wanted.contains(path))
            m_watcher->removePath(path);
    }
    for (const QString& path : wanted) {
        if (!watched.contains(path) && QFile::exists(path))
            m_watcher->addPath(path);
    }
}

// What the rendering asks

std::string HTMLDocument::pageMarkup() const
{
    return m_tree.document() ? m_tree.document()->outerHtml() : std::string();
}

SiteFolder HTMLDocument::siteFolder() const
{
    return {docURL(), mountPath};
}

QString HTMLDocument::getHTML(const QString& source)
{
    if (source != QLatin1String("OutlineView"))
        return m_viewController->renderedMarkup();
    return m_tree.document() ? QString::fromStdString(m_store.markup()) : QString();
}

void HTMLDocument::setHTML(std::string_view markup)
{
    html::Document* const document = m_tree.document();
    if (!document)
        return;
    markEdited(tr("Edit"));
    // The markup is the root element's: the doctype decides how it is read.
    std::string page;
    for (const html::Node* node = document->firstChild(); node; node = node->next()) {
        if (node->kind() == html::Node::Kind::Doctype)
            page = node->outerHtml();
    }
    auto parsed = html::parse(page.append(markup));
    if (!parsed) {
        showNotice(tr("The page was not changed: %1").arg(QString::fromStdString(parsed.error().text)),
                   false);
        return;
    }
    if (html::Element* body = (*parsed)->body())
        body->removeAttr("contenteditable");
    m_readBack = differenceTo(*document->documentElement(), *(*parsed)->documentElement());
}

void HTMLDocument::markEdited(const QString& name)
{
    const QScopedValueRollback quiet(m_quiet, true);
    m_commands.apply(std::exchange(m_readBack, {}), name, PageCommands::Merging::WithTheLast);
    updateTagControls();
}

void HTMLDocument::reload()
{
    if (m_tree.document())
        m_viewController->show(ViewController::Position::Keep);
}

void HTMLDocument::buildCSSMenu()
{
    m_styleSheets->buildCSSMenu();
}

void HTMLDocument::loadCSSNames()
{
    const QPointer<HTMLDocument> self = this;
    const QVariant classes =
        m_viewController->evaluateAndWait(QStringLiteral("findAllDotClassNamesFromCSS()"));
    if (!self)
        return;
    m_cssClassArray = ScriptCall::strings(classes).value_or(m_cssClassArray);
    const QVariant ids = m_viewController->evaluateAndWait(QStringLiteral("findAllIDNamesFromCSS()"));
    if (self)
        m_cssIDArray = ScriptCall::strings(ids).value_or(m_cssIDArray);
}

void HTMLDocument::applyCallbackText(const QString& text)
{
    const html::Element* const element = selectedElement();
    if (!element || !element->is("title"))
        std::puts("default case");
    else if (QString::fromStdString(element->text()) != text.simplified())
        m_commands.setTitle(text);
}

void HTMLDocument::setActiveElement(const std::vector<int>& path)
{
    const QScopedValueRollback quiet(m_quiet, true);
    const QModelIndex index = m_outline->indexAtPath(path);
    m_ui->myOutlineView->clearSelection();
    m_outline->setActiveElement(index);
    m_ui->myOutlineView->setCurrentIndex(index);
    m_ui->myOutlineView->scrollTo(index);
    updateTagControls();
}

void HTMLDocument::fitWindowToPage(int width)
{
    const int missing = width - m_viewController->webView()->width();
    if (std::exchange(m_wasFitted, true) || missing <= 0 || isMaximized() || isFullScreen())
        return;
    const int most = screen()->availableGeometry().width();
    resize(std::max(this->width(), std::min(this->width() + missing, most)), height());
}

QString HTMLDocument::linkTo(const fs::path& file) const
{
    return QString::fromStdString(relativePath(file, docURL().parent_path()));
}

// Edits

html::Element* HTMLDocument::selectedElement() const
{
    const QModelIndexList selected = m_ui->myOutlineView->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? nullptr : OutlineModel::elementAt(selected.first());
}

void HTMLDocument::editSelected(const std::function<void(html::Element&)>& edit)
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    html::Element* const element = self ? selectedElement() : nullptr;
    if (!element)
        return;
    {
        const QScopedValueRollback quiet(m_quiet, true);
        edit(*element);
    }
    refreshAfterEdit();
}

void HTMLDocument::refreshAfterEdit()
{
    m_styleSheets->updateCSSMenu();
    updateTagControls();
    m_selectsWhenShown = true;
    reload();
}

void HTMLDocument::addTag(const QString& tagName)
{
    html::NodePtr added = m_rules.newElement(tagName);
    if (!added)
        return;
    editSelected([&](html::Element& target) {
        m_commands.insert(std::move(added), {&target, target.firstChild()}, tr("Insert <%1>").arg(tagName));
    });
}

void HTMLDocument::deleteTag()
{
    if (m_rules.canDelete(selectedElement()))
        editSelected([this](html::Element& element) { m_commands.remove(element); });
}

void HTMLDocument::editAttributes(TagAction action, const QString& title)
{
    const std::string name = title.toStdString();
    editSelected([&](html::Element& element) {
        if (action == TagAction::AddClass)
            m_commands.setAttributes(element, withClass(element.attributes(), name), tr("Add Class"));
        else if (action == TagAction::RemoveClass)
            m_commands.setAttributes(element, withoutClass(element.attributes(), name), tr("Remove Class"));
        else if (action == TagAction::AddID)
            m_commands.setAttributes(element, withID(element.attributes(), name), tr("Add ID"));
        else
            m_commands.setAttributes(element, withoutID(element.attributes()), tr("Remove ID"));
    });
}

void HTMLDocument::perform(TagAction action, const QString& title)
{
    if (action == TagAction::AddTag)
        addTag(title);
    else if (action == TagAction::DeleteTag)
        deleteTag();
    else if (action != TagAction::None)
        editAttributes(action, title);
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

void HTMLDocument::changeTitle(const QString& title)
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    if (!self || QString::fromStdString(m_tree.document()->title()) == title)
        return;
    m_commands.setTitle(title);
    refreshAfterEdit();
}

void HTMLDocument::acceptDrop(const QPersistentModelIndex& dragged, const QPersistentModelIndex& target,
                              int childIndex, Qt::DropAction action)
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    html::Element* const element = self ? OutlineModel::elementAt(dragged) : nullptr;
    html::Element* const parent = self ? OutlineModel::elementAt(target) : nullptr;
    if (!isDropAllowed(m_rules, element, parent))
        return;
    {
        const QScopedValueRollback quiet(m_quiet, true);
        if (action == Qt::CopyAction)
            m_commands.copy(*element, dropPosition(*parent, childIndex, nullptr));
        else
            m_commands.move(*element, dropPosition(*parent, childIndex, element));
        m_ui->myOutlineView->setCurrentIndex(m_outline->indexOf(element));
    }
    refreshAfterEdit();
}

void HTMLDocument::travelHistory(void (QUndoStack::*step)())
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    if (!self)
        return;
    const int before = m_stack.index();
    {
        const QScopedValueRollback quiet(m_quiet, true);
        (m_stack.*step)();
    }
    if (m_stack.index() == before)
        return;
    m_styleSheets->updateCSSMenu();
    updateTagControls();
    reload();
}

void HTMLDocument::undo()
{
    travelHistory(&QUndoStack::undo);
}

void HTMLDocument::redo()
{
    travelHistory(&QUndoStack::redo);
}

void HTMLDocument::updateStyleBlock(const QString& title, const QString& css)
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    html::Element* const block = self && m_tree.document() ? styleBlock(*m_tree.document(), title) : nullptr;
    if (!block)
        return;
    m_commands.setInnerMarkup(*block, css, tr("Update CSS"));
    reload();
}

// Selection

void HTMLDocument::outlineViewSelectionDidChange()
{
    if (m_quiet)
        return;
    m_outline->setActiveElement({});
    showSelectionInPage();
    updateTagControls();
}

void HTMLDocument::showSelectionInPage()
{
    const html::Element* const element = selectedElement();
    if (!element)
        return;
    const QString selector = QString::fromStdString(element->cssSelector());
    std::printf("OutlineView = %s\n", qUtf8Printable(selector));
    m_viewController->evaluate(
        QStringLiteral("selectText(document.querySelector('%1'))").arg(quotedForScript(selector)));
}

void HTMLDocument::updateTagControls()
{
    const html::Element* const element = selectedElement();
    m_ui->addTagButton->setEnabled(m_rules.canEnable(element));
    fillInsertMenu(m_ui->addTagButton->menu());
    m_ui->insertMenu->setEnabled(m_rules.canEnable(element));
    m_ui->deleteTagButton->setEnabled(m_rules.canDelete(element));
    m_ui->deleteTagAction->setEnabled(m_rules.canDelete(element));
    m_ui->elementPath->setText(element ? pathText(*element) : QString());
}

void HTMLDocument::fillInsertMenu(QMenu* menu)
{
    menu->clear();
    const QStringList titles = insertTitles(m_rules, selectedElement());
    for (const QString& title : titles)
        menu->addAction(title, this, [this, title] { addTag(title); });
}

void HTMLDocument::menuWillOpen(const QPoint& where)
{
    const auto entries = buildTagMenu(m_rules, selectedElement(), m_cssClassArray, m_cssIDArray);
    if (entries.empty())
        return;
    auto* const menu = new QMenu(m_ui->myOutlineView);
    menu->setObjectName(QStringLiteral("outlineMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addEntries(menu, entries);
    menu->popup(where);
}

void HTMLDocument::addEntries(QMenu* menu, const std::vector<TagMenuEntry>& entries)
{
    for (const TagMenuEntry& entry : entries) {
        if (entry.isSeparator) {
            menu->addSeparator();
        } else if (!entry.submenu.empty()) {
            QMenu* const submenu = menu->addMenu(entry.title);
            addEntries(submenu, entry.submenu);
        } else {
            menu->addAction(
                entry.title, this,
                [this, action = entry.action, title = entry.title] { perform(action, title); },
                Qt::QueuedConnection);
        }
    }
}

// Saving

bool HTMLDocument::writeToURL(const fs::path& url)
{
    const fs::path before = docURL();
    const bool hadFile = m_store.hasFile();
    if (const auto saved = m_store.save(url); !saved) {
        showNotice(tr("The page could not be saved, your edits are kept. %1")
                       .arg(QString::fromStdString(saved.error().text)),
                   false);
        return false;
    }
    m_ui->noticeBar->hide();
    watchFile();
    updateTitle();
    if (!hadFile || before != docURL()) {
        emit locationChanged(docURL());
        reload();
        buildCSSMenu();
    }
    return true;
}

void HTMLDocument::save(const std::function<void()>& then)
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    if (!self || !m_tree.document())
        return;
    if (!m_store.hasFile())
        saveAs(then);
    else if (m_store.changedOnDisk())
        askToOverwrite(then);
    else if (writeToURL(docURL()) && then)
        then();
}

void HTMLDocument::askToOverwrite(const std::function<void()>& then)
{
    auto* const question = new QMessageBox(
        QMessageBox::Warning, tr("Save"),
        tr("Another program has changed \u201c%1\u201d since it was read.").arg(textOf(docURL().filename())),
        QMessageBox::Cancel, this);
    question->setObjectName(QStringLiteral("overwriteQuestion"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setInformativeText(tr("Saving replaces that version with yours."));
    QPushButton* const overwrite = question->addButton(tr("Replace"), QMessageBox::AcceptRole);
    connect(overwrite, &QPushButton::clicked, this, [this, then] {
        if (writeToURL(docURL()) && then)
            then();
    });
    question->open();
}

void HTMLDocument::saveAs(const std::function<void()>& then)
{
    const QPointer<HTMLDocument> self = this;
    m_viewController->catchUp();
    if (!self || !m_tree.document())
        return;
    auto* const panel = new QFileDialog(this, tr("Save As"), QString(), nameFilter());
    panel->setObjectName(QStringLiteral("savePanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setDefaultSuffix(QStringLiteral("html"));
    if (m_store.hasFile())
        panel->selectFile(textOf(docURL()));
    else if (!mountPath.empty())
        panel->setDirectory(textOf(mountPath));
    connect(panel, &QFileDialog::fileSelected, this, [this, then](const QString& file) {
        if (saveToURL(pathOf(file)) && then)
            then();
    });
    panel->open();
}

void HTMLDocument::openPanel()
{
    auto* const panel = new QFileDialog(this, tr("Open"), QString(), nameFilter());
    panel->setObjectName(QStringLiteral("openPanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setDirectory(textOf(m_store.hasFile() ? docURL().parent_path() : mountPath));
    connect(panel, &QFileDialog::fileSelected, this,
            [this](const QString& file) { emit openRequested(pathOf(file)); });
    panel->open();
}

void HTMLDocument::fillRecentMenu()
{
    m_ui->openRecentMenu->clear();
    const auto pages = m_services.recentPages ? m_services.recentPages() : std::vector<fs::path>();
    for (const fs::path& page : pages)
        m_ui->openRecentMenu->addAction(textOf(page).replace(u'&', QStringLiteral("&&")), this,
                                        [this, page] { emit openRequested(page); });
    if (pages.empty())
        m_ui->openRecentMenu->addAction(tr("No Recent Pages"))->setEnabled(false);
}

// Closing

bool HTMLDocument::isEdited() const
{
    return !m_stack.isClean() || m_styleSheets->hasDrafts();
}

void HTMLDocument::closeEvent(QCloseEvent* event)
{
    event->ignore();
    if (!m_mayClose) {
        const QPointer<HTMLDocument> self = this;
        m_viewController->catchUp();
        if (!self)
            return;
        if (isEdited()) {
            askToSave();
            return;
        }
    }
    emit windowWillClose();
    event->accept();
}

void HTMLDocument::askToSave()
{
    if (findChild<QMessageBox*>(QStringLiteral("saveQuestion")))
        return;
    const QString name = m_store.hasFile() ? textOf(docURL().filename()) : tr("Untitled");
    auto* const question = new QMessageBox(
        QMessageBox::Question, tr("Close"), tr("Save the changes of \u201c%1\u201d?").arg(name),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    question->setObjectName(QStringLiteral("saveQuestion"));
    question->setAttribute(Qt::WA_DeleteOnClose);
    question->setDefaultButton(QMessageBox::Save);
    connect(question, &QMessageBox::finished, this, [this](int answer) {
        if (answer == QMessageBox::Save) {
            m_styleSheets->storeDrafts();
            save([this] { close(); });
        } else if (answer == QMessageBox::Discard) {
            m_mayClose = true;
            close();
        }
    });
    question->open();
}

void HTMLDocument::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && m_tree.document())
        QMetaObject::invokeMethod(this, &HTMLDocument::checkFile, Qt::QueuedConnection);
    if (event->type() == QEvent::PaletteChange && m_outline)
        m_outline->setActiveColour(palette().color(QPalette::Link));
}

// The window

void HTMLDocument::showNotice(const QString& text, bool offersReload)
{
    m_ui->noticeText->setText(text);
    m_ui->noticeReloadButton->setVisible(offersReload);
    m_ui->noticeBar->show();
}

void HTMLDocument::updateTitle()
{
    const QString name = m_store.hasFile() ? textOf(docURL().filename()) : tr("Untitled");
    setWindowTitle(name + QStringLiteral("[*]"));
    setWindowModified(m_styleSheets && isEdited());
}

void HTMLDocument::updateActions()
{
    const bool hasPage = m_tree.document() != nullptr;
    for (QAction* action : {m_ui->saveAction, m_ui->saveAsAction, m_ui->pageTitleAction, m_ui->reloadAction,
                            m_ui->showSourceAction, m_ui->inspectElementAction, m_ui->makeLinkAction,
                            m_ui->editLinkAction, m_ui->removeLinkAction, m_ui->insertImageAction,
                            m_ui->boldAction, m_ui->italicAction, m_ui->underlineAction})
        action->setEnabled(hasPage);
    m_ui->revertAction->setEnabled(m_store.hasFile());
    m_ui->undoAction->setEnabled(m_stack.canUndo());
    m_ui->redoAction->setEnabled(m_stack.canRedo());
    m_ui->undoAction->setText(tr("&Undo %1").arg(m_stack.undoText()).trimmed());
    m_ui->redoAction->setText(tr("&Redo %1").arg(m_stack.redoText()).trimmed());
    updateTagControls();
}

// The page has its own clipboard commands, the fields have theirs.
void HTMLDocument::sendToFocus(const char* slot, int webAction)
{
    QWidget* const focus = QApplication::focusWidget();
    if (focus && focus->metaObject()->indexOfSlot(QByteArray(slot).append("()").constData()) >= 0)
        QMetaObject::invokeMethod(focus, slot);
    else
        m_viewController->webView()->page()->triggerAction(static_cast<QWebEnginePage::WebAction>(webAction));
}

void HTMLDocument::zoom(double factor)
{
    m_magnification = std::clamp(factor, 0.25, 5.0);
    m_viewController->setMagnification(m_magnification);
}

QByteArray HTMLDocument::layoutState() const
{
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << saveGeometry() << m_ui->splitView->saveState();
    return state;
}

void HTMLDocument::restoreLayoutState(const QByteArray& state)
{
    QByteArray geometry;
    QByteArray split;
    QDataStream stream(state);
    stream >> geometry >> split;
    if (stream.status() != QDataStream::Ok)
        return;
    restoreGeometry(geometry);
    m_ui->splitView->restoreState(split);
}

} // namespace luma
