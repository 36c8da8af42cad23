// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/viewcontroller.h"

#include "web/catchup.h"
#include "web/consoleruns.h"
#include "web/formatmenus.h"
#include "web/linkactions.h"
#include "web/pagedocument.h"
#include "web/processrecovery.h"
#include "web/scriptconsole.h"
#include "web/shownfiles.h"
#include "web/sourcepanel.h"
#include "web/viewframe.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

#include <utility>

namespace luma {

namespace {

QString titleOf(const QObject* sender)
{
    if (const auto* action = qobject_cast<const QAction*>(sender))
        return action->text();
    return sender ? sender->property("text").toString() : QString();
}

// The position comes from a page, so it enters the script as a number only.
QString scrollingTo(const QString& position)
{
    return QStringLiteral("document.body.scrollTop = ") + QString::number(position.toDouble(), 'f', 3);
}

bool showsOtherFiles(std::string_view markup)
{
    return markup.find("<img") != std::string_view::npos || markup.find("url(") != std::string_view::npos;
}

constexpr int frameTime = 17; // milliseconds

const QString tellFormats = QStringLiteral("tellFormats()");

QString commandWordOf(const QObject* sender)
{
    const QVariant word = sender ? sender->property("commandWord") : QVariant();
    return word.isValid() ? word.toString() : titleOf(sender);
}

} // namespace

ViewController::ViewController(PageDocument& document, QWidget* contentView, QLabel* infoText)
    : QObject(contentView),
      m_document(document),
      m_contentView(contentView),
      m_infoText(infoText),
      m_webView(new MyWebView(contentView))
{
    m_webView->setObjectName(QStringLiteral("webView"));
    m_webView->setAccessibleName(tr("Page"));
    auto* layout = new QVBoxLayout(contentView);
    layout->setContentsMargins({});
    layout->addWidget(m_webView);
    m_frame = new ViewFrame(*m_webView, *contentView, this);
    m_reader = new RenderingReader(m_webView->editorPage(), m_document, this);
    m_catchUp = new CatchUp(*m_webView, *m_reader, this);
    m_recovery = new ProcessRecovery(*m_webView, this);
    m_files = new ShownFiles(
        m_webView->editorPage(), [this] { return m_document.siteFolder(); }, this);
    m_updateEnd.setSingleShot(true);
    connect(&m_updateEnd, &QTimer::timeout, this, &ViewController::endUpdate);
    createMenus();
    createSheets();
    connectPage();
    connectView();
}

ViewController::~ViewController()
{
    delete m_webView;
}

void ViewController::createMenus()
{
    m_fontSubMenu = FormatMenus::textStyle(m_contentView, *this);
    m_justificationSubMenu = FormatMenus::justification(m_contentView, *this);
    m_webView->setMenus(m_fontSubMenu, m_justificationSubMenu);
}

void ViewController::createSheets()
{
    m_links = new LinkActions(
        m_document, *m_webView, m_infoText,
        [this](const QString& name, const QString& script) { perform(name, script); }, this);
    connect(m_links, &LinkActions::failed, this, &ViewController::failed);
    m_sourcePanel = new SourcePanel(m_contentView);
    m_console = new ScriptConsole(m_contentView);
    new ConsoleRuns(*m_console, m_webView->editorPage(), *m_catchUp, *m_reader, this);
    connect(m_sourcePanel, &SourcePanel::saveRequested, this, &ViewController::saveSource);
}

void ViewController::connectPage()
{
    EditorPage& page = m_webView->editorPage();
    connect(&page, &EditorPage::ready, this, &ViewController::restorePosition);
    connect(&page, &EditorPage::shown, this, &ViewController::didFinish);
    connect(m_recovery, &ProcessRecovery::showingRequested, this, [this] { show(Position::Keep); });
    connect(
        &page.bridge(), &PageBridge::callbackText, this,
        [this](const QString& text) { m_document.applyCallbackText(text); }, Qt::QueuedConnection);
    connect(&page.bridge(), &PageBridge::mouseEventText, this, [this](const QString& text) {
        if (m_infoText)
            m_infoText->setText(text);
    });
    connect(&page.bridge(), &PageBridge::activeElementHTML, this, &ViewController::takeActiveElement,
            Qt::QueuedConnection);
    connect(&page.bridge(), &PageBridge::formats, this, &ViewController::takeFormats);
    connect(&page.bridge(), &PageBridge::mutationObserver, this, [this](const RenderingChange& change) {
        if (change.subtree && showsOtherFiles(change.subtree->markup))
            m_files->updateSoon();
    });
    connect(m_reader, &RenderingReader::upToDate, this, &ViewController::tellActiveElement);
    connect(m_reader, &RenderingReader::differs, this, [this] { show(Position::Keep); });
}

void ViewController::connectView()
{
    connect(m_webView, &MyWebView::undoRequested, this, [this] { m_document.undo(); });
    connect(m_webView, &MyWebView::redoRequested, this, [this] { m_document.redo(); });
    connect(m_webView, &MyWebView::cellRequested, this, &ViewController::moveToCell);
    connect(m_webView, &MyWebView::inspectElementRequested, this, &ViewController::inspectElement);
}

void ViewController::evaluate(const QString& script)
{
    ScriptCall::run(&m_webView->editorPage(), script);
}

void ViewController::ask(const QString& script, QObject* context, const ScriptCall::Answered& answered)
{
    ScriptCall::ask(&m_webView->editorPage(), script, context, answered);
}

void ViewController::whenCaughtUp(QObject* context, const std::function<void()>& then)
{
    m_catchUp->whenCaughtUp(context, [this, then] {
        endUpdate();
        then();
    });
}

void ViewController::whenCaughtUpWithLooks(QObject* context,
                                           const std::function<void(const Paths& inLines)>& then)
{
    ask(QStringLiteral("elementsShownInLines()"), context, [this, context, then](const QVariant& answer) {
        Paths paths;
        const QVariantList elements = answer.toList();
        for (const QVariant& element : elements)
            paths.push_back(ScriptCall::path(element));
        whenCaughtUp(context, [then, paths] { then(paths); });
    });
}

void ViewController::catchUp()
{
    ScriptCall::waitInLoop(this,
                           [this](QObject* loop, const ScriptCall::Done& done) { whenCaughtUp(loop, done); });
}

QString ViewController::renderedMarkup() const
{
    EditorPage& page = m_webView->editorPage();
    return page.isComplete() ? ScriptCall::wait(&page, RenderingReader::markupScript).toString() : QString();
}

double ViewController::magnification() const
{
    return m_frame->magnification();
}

void ViewController::setMagnification(double factor)
{
    m_frame->setMagnification(factor);
}

void ViewController::setPageWidth(int width)
{
    m_frame->setPageWidth(width);
}

void ViewController::setMedia(const Media& media)
{
    m_media = media;
    showMedia();
}

void ViewController::showMedia()
{
    const auto word = [](bool isOn) { return isOn ? QStringLiteral("true") : QStringLiteral("false"); };
    evaluate(QStringLiteral("showMedia(%1, %2)").arg(word(m_media.isDark), word(m_media.isPrint)));
}

// Showing

void ViewController::show(Position position)
{
    holdUntilReady();
    if (position == Position::Start) {
        m_currentScrollPosition.clear();
        m_currentCaret.clear();
        load();
    } else if (m_webView->editorPage().isComplete()) {
        keepPositionAndLoad();
    } else {
        load();
    }
}

void ViewController::update(const QByteArray& changes, RenderingReader::Place place)
{
    if (changes.isNull()) {
        show(Position::Keep);
        return;
    }
    m_webView->heldInput().hold();
    m_reader->send(changes, place, [this, changes, shows = m_shows](bool isDone) {
        endUpdate();
        m_endUpdate = [this, changes, shows, isDone] {
            if (shows == m_shows && isDone)
                finishUpdate(changes);
        };
        m_updateEnd.start(frameTime);
        if (shows == m_shows && !isDone)
            show(Position::Keep);
    });
}

// Behind the frame that shows the change, as a selection may take the engine longer than the change, and before the next
// edit. A key must not overtake the script that sets the selection; scripts are answered in order.
void ViewController::endUpdate()
{
    m_updateEnd.stop();
    if (const auto end = std::exchange(m_endUpdate, {})) {
        end();
        ask(QStringLiteral("true"), this, [this](const QVariant&) { m_webView->heldInput().release(); });
    }
}

void ViewController::renewFile(const std::filesystem::path& file)
{
    m_files->renew(file);
}

void ViewController::showDraft(const std::filesystem::path& file, const std::optional<QByteArray>& text)
{
    m_webView->editorPage().setDraft(file, text);
    m_files->renew(file.lexically_normal());
}

void ViewController::finishUpdate(const QByteArray& changes)
{
    emit selectionRestored();
    for (const char* const sign : {R"("name":"style")", R"("name":"link")", "<style", "<link"}) {
        if (changes.contains(sign)) {
            m_document.loadCSSNames();
            m_files->update();
            return;
        }
    }
    if (showsOtherFiles({changes.constData(), static_cast<std::size_t>(changes.size())}))
        m_files->update();
}

void ViewController::keepPositionAndLoad()
{
    ask(QStringLiteral("[document.body.scrollTop.toString(), caretPosition()]"), this,
        [this, shows = m_shows](const QVariant& answer) {
            if (shows != m_shows)
                return;
            if (const auto position = ScriptCall::strings(answer); position && position->size() == 2) {
                m_currentScrollPosition = position->first();
                m_currentCaret = position->last();
            }
            load();
        });
}

void ViewController::load()
{
    EditorPage& page = m_webView->editorPage();
    m_recovery->hideNotice();
    m_activeElementWaits = false;
    page.show(QByteArray::fromStdString(m_document.pageMarkup()), m_document.siteFolder());
}

// From here on the page shown is neither read nor typed into.
void ViewController::holdUntilReady()
{
    ++m_shows;
    m_reader->stopUntilReady();
    if (!std::exchange(m_holdsInput, true))
        m_webView->heldInput().hold();
}

void ViewController::goOnAfterHold(int shows)
{
    if (shows == m_shows && std::exchange(m_holdsInput, false))
        m_webView->heldInput().release();
}

// Before anything of the page is seen, so that nothing jumps.
void ViewController::restorePosition()
{
    if (!m_currentCaret.isEmpty())
        evaluate(scriptCall(QStringLiteral("restoreCaret"), m_currentCaret));
    emit selectionRestored();
    evaluate(tellFormats);
    showMedia();
    if (!m_currentScrollPosition.isEmpty())
        evaluate(scrollingTo(m_currentScrollPosition));
    ask(QStringLiteral("markAsShown()"), this,
        [this, shows = m_shows](const QVariant&) { goOnAfterHold(shows); });
}

void ViewController::didFinish()
{
    m_frame->apply();
    showMedia();
    m_document.loadCSSNames();
    // Compared in the page, as the window may have another width when the answer comes.
    ask(QStringLiteral("document.body.offsetWidth > innerWidth ? document.body.offsetWidth : 0"), this,
        [this](const QVariant& width) {
            m_document.fitWindowToPage(width.toInt());
            // Images have made the page longer; but the user may have scrolled meanwhile.
            if (!m_currentScrollPosition.isEmpty())
                evaluate(QStringLiteral("if (isAsShown()) ") + scrollingTo(m_currentScrollPosition));
        });
}

// The caret's element is passed on after the markup to which its path refers.

void ViewController::takeActiveElement(const QList<int>& path)
{
    if (!m_reader->canRead())
        return;
    m_activeElement.assign(path.begin(), path.end());
    m_activeElementWaits = true;
    if (m_reader->isUpToDate())
        tellActiveElement();
}

void ViewController::takeFormats(const QStringList& titles)
{
    m_webView->showFormats(titles);
    emit formatsChanged(titles);
}

void ViewController::tellActiveElement()
{
    if (std::exchange(m_activeElementWaits, false))
        m_document.setActiveElement(m_activeElement);
}

// Commands

void ViewController::perform(const QString& name, const QString& script)
{
    m_webView->heldInput().take([this, name, script] { performNow(name, script); });
}

// What was typed before is an edit of its own, and what is typed next waits: keys and scripts reach the page on paths of
// their own, and a key might overtake the command.
void ViewController::performNow(const QString& name, const QString& script)
{
    whenCaughtUp(this, [this, name, script] {
        m_webView->heldInput().hold();
        m_reader->run(script, name, [this](const QVariant&) {
            evaluate(tellFormats); // a command without effect must not stay pressed
            m_webView->heldInput().release();
        });
    });
}

void ViewController::performCommand(const QString& name, const QString& word)
{
    perform(name, scriptCall(QStringLiteral("doCommand"), word));
}

void ViewController::removeLink()
{
    performCommand(tr("Remove Link"), QStringLiteral("Unlink"));
}

void ViewController::applyStyle(QObject* sender)
{
    perform(titleOf(sender), scriptCall(QStringLiteral("applyStyle"), commandWordOf(sender)));
}

void ViewController::removeStyle(QObject* sender)
{
    perform(titleOf(sender), scriptCall(QStringLiteral("removeStyle"), commandWordOf(sender)));
}

void ViewController::removeAllStyles()
{
    perform(tr("Remove Format"), scriptCall(QStringLiteral("removeStyle"), QString()));
}

void ViewController::removeJustfication()
{
    perform(tr("Remove Justification"), scriptCall(QStringLiteral("removeJustfication"), QString()));
}

void ViewController::doExecCommand(QObject* sender)
{
    performCommand(titleOf(sender), commandWordOf(sender));
}

void ViewController::formatText(QObject* sender)
{
    performCommand(titleOf(sender), commandWordOf(sender));
}

// Links and images

void ViewController::makeLink()
{
    m_links->makeLink();
}

void ViewController::editLink()
{
    m_links->editLink();
}

void ViewController::insertImage()
{
    m_links->insertImage();
}

void ViewController::insertText(const QString& text)
{
    perform(tr("Insert Character"), scriptCall(QStringLiteral("insertCharacter"), text));
    m_webView->setFocus();
}

void ViewController::insertNode(const QString& name, const std::string& markup)
{
    perform(name, scriptCall(QStringLiteral("insertMarkup"), QString::fromStdString(markup)));
    m_webView->setFocus();
}

void ViewController::insertTable(int rows, int columns, bool hasHeader)
{
    perform(tr("Insert Table"), QStringLiteral("insertTable(%1, %2, %3)")
                                    .arg(rows)
                                    .arg(columns)
                                    .arg(hasHeader ? QLatin1String("true") : QLatin1String("false")));
    m_webView->setFocus();
}

// What was typed before Tab is on its way to the cell that is left.
void ViewController::moveToCell(int step)
{
    whenCaughtUp(this, [this, step] {
        m_webView->heldInput().hold();
        ask(QStringLiteral("moveToCell(%1)").arg(step), this, [this, step](const QVariant& answer) {
            if (step > 0 && answer == QLatin1String("end"))
                emit rowRequested();
            else if (answer != QLatin1String("moved"))
                m_webView->leave(step > 0);
            m_webView->heldInput().release();
        });
    });
}

LinkSheet* ViewController::linkSheet() const
{
    return m_links->sheet();
}

// Source and console

void ViewController::showSource()
{
    whenCaughtUp(this, [this] {
        const PageDocument::Source source = m_document.source();
        const auto place = QString::fromUtf8(source.text.data(), static_cast<qsizetype>(source.place)).size();
        // Input comes in between: each of the two takes its time with a large page.
        QTimer::singleShot(1, m_sourcePanel, [this, text = QString::fromStdString(source.text), place] {
            m_sourcePanel->begin(text, place);
        });
    });
}

void ViewController::saveSource(const QString& source, qsizetype place)
{
    whenCaughtUp(this, [this, source, place] {
        const auto bytesBefore = static_cast<std::size_t>(source.left(place).toUtf8().size());
        const std::string text = source.toStdString();
        if (const auto refusal = m_document.setSource({text, bytesBefore})) {
            const std::string_view before = std::string_view(text).substr(0, refusal->place.value_or(0));
            const auto trouble =
                QString::fromUtf8(before.data(), static_cast<qsizetype>(before.size())).size();
            m_sourcePanel->refuse(QString::fromStdString(refusal->reason), refusal->place ? trouble : -1);
            return;
        }
        m_sourcePanel->accept();
        show(Position::Keep);
        m_document.buildCSSMenu();
    });
}

void ViewController::showScriptConsole()
{
    m_console->show();
    m_console->raise();
}

void ViewController::inspectElement()
{
    auto* tools = new QWebEngineView;
    tools->setAttribute(Qt::WA_DeleteOnClose);
    tools->setWindowTitle(tr("Inspect Element"));
    tools->resize(900, 600);
    // In the default profile, as the tools are a page whose scripts must run.
    auto* toolsPage = new QWebEnginePage(tools);
    tools->setPage(toolsPage);
    m_webView->page()->setDevToolsPage(toolsPage);
    m_webView->page()->triggerAction(QWebEnginePage::InspectElement);
    connect(m_webView, &QObject::destroyed, tools, &QWidget::close);
    tools->show();
}

} // namespace luma
