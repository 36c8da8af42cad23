// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/viewcontroller.h"

#include "web/formatmenus.h"
#include "web/linkactions.h"
#include "web/pagedocument.h"
#include "web/renderingreader.h"
#include "web/scriptcall.h"
#include "web/scriptconsole.h"
#include "web/scriptquote.h"
#include "web/sourcepanel.h"
#include "web/stoppednotice.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

#include <utility>

namespace luma {

namespace {

constexpr int deathsInARow = 3;
constexpr qint64 aRow = 30'000;            // milliseconds
constexpr qint64 longestWaitForKeys = 300; // milliseconds

QString titleOf(const QObject* sender)
{
    if (const auto* action = qobject_cast<const QAction*>(sender))
        return action->text();
    return sender ? sender->property("text").toString() : QString();
}

// The position came from a page, and goes into a script only as the number it should be.
QString scrollingTo(const QString& position)
{
    return QStringLiteral("document.body.scrollTop = ") + QString::number(position.toDouble(), 'f', 3);
}

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
    m_reader = new RenderingReader(
        m_webView->editorPage(),
        [this](std::string_view markup, const QString& name) {
            m_document.setHTML(markup, name.isEmpty() ? tr("Typing") : name);
        },
        this);
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
    m_sourcePanel = new SourcePanel(m_contentView);
    m_console = new ScriptConsole(m_contentView);
    connect(m_sourcePanel, &SourcePanel::saved, this, &ViewController::saveSource);
    connect(m_console, &ScriptConsole::runRequested, this, &ViewController::runJS);
    connect(&m_webView->editorPage(), &EditorPage::scriptMessage, m_console, &ScriptConsole::addMessage);
}

void ViewController::connectPage()
{
    EditorPage& page = m_webView->editorPage();
    // At once, so that nothing is seen to jump. What waits for the page comes later, as the engine answers
    // no question while it is at work itself.
    connect(&page, &EditorPage::ready, this, &ViewController::restorePosition);
    connect(&page, &EditorPage::shown, this, &ViewController::didFinish, Qt::QueuedConnection);
    connect(&page, &EditorPage::processDied, this, &ViewController::rebuildAfterDeath);
    connect(
        &page.bridge(), &PageBridge::callbackText, this,
        [this](const QString& text) { m_document.applyCallbackText(text); }, Qt::QueuedConnection);
    connect(&page.bridge(), &PageBridge::mouseEventText, this, [this](const QString& text) {
        if (m_infoText)
            m_infoText->setText(text);
    });
    connect(&page.bridge(), &PageBridge::activeElementHTML, this, &ViewController::takeActiveElement,
            Qt::QueuedConnection);
    connect(m_reader, &RenderingReader::upToDate, this, &ViewController::tellActiveElement);
}

void ViewController::connectView()
{
    connect(m_webView, &MyWebView::undoRequested, this, [this] { m_document.undo(); });
    connect(m_webView, &MyWebView::redoRequested, this, [this] { m_document.redo(); });
    connect(m_webView, &MyWebView::inspectElementRequested, this, &ViewController::inspectElement);
}

void ViewController::evaluate(const QString& script)
{
    ScriptCall::run(&m_webView->editorPage(), script);
}

QVariant ViewController::evaluateAndWait(const QString& script)
{
    return ScriptCall::wait(&m_webView->editorPage(), script);
}

void ViewController::catchUp()
{
    const QPointer<ViewController> self = this;
    HeldInput& input = m_webView->heldInput();
    input.hold();
    waitForKeys();
    if (self)
        m_reader->catchUp();
    // What a key does may come behind the key.
    if (self)
        m_reader->catchUp();
    if (self)
        QMetaObject::invokeMethod(&input, &HeldInput::release, Qt::QueuedConnection);
}

// Not for ever, as a key may have had no meaning for the page.
void ViewController::waitForKeys()
{
    const QPointer<ViewController> self = this;
    QElapsedTimer clock;
    clock.start();
    while (m_webView->editorPage().isComplete()) {
        const QVariant count = evaluateAndWait(QStringLiteral("countOfKeys()"));
        if (!self || !count.isValid() || count.toInt() >= m_webView->countOfKeys())
            return;
        if (clock.hasExpired(longestWaitForKeys)) {
            m_webView->setCountOfKeys(count.toInt());
            return;
        }
    }
}

QString ViewController::renderedMarkup() const
{
    return m_reader->currentMarkup();
}

void ViewController::setMagnification(double factor)
{
    m_magnification = factor;
    m_webView->setZoomFactor(factor);
}

// Showing

void ViewController::show(Position position)
{
    EditorPage& page = m_webView->editorPage();
    holdUntilReady();
    if (position == Position::Start) {
        m_currentScrollPosition.clear();
        m_currentCaret.clear();
    } else if (page.isComplete() && !readPosition()) {
        return;
    }
    delete m_stopped;
    m_activeElementWaits = false;
    page.clearCaches();
    page.show(QByteArray::fromStdString(m_document.pageMarkup()), m_document.siteFolder());
}

bool ViewController::readPosition()
{
    const QPointer<ViewController> self = this;
    const int shows = m_shows;
    const QVariant scroll = evaluateAndWait(QStringLiteral("document.body.scrollTop.toString()"));
    const QVariant caret = self ? evaluateAndWait(QStringLiteral("caretPosition()")) : QVariant();
    if (!self || shows != m_shows)
        return false;
    if (scroll.isValid() && caret.isValid()) {
        m_currentScrollPosition = scroll.toString();
        m_currentCaret = caret.toString();
    }
    return true;
}

// The page as it is has nothing more to say, and takes nothing more.
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

void ViewController::didFinish()
{
    const QPointer<ViewController> self = this;
    m_webView->setZoomFactor(m_magnification);
    m_document.loadCSSNames();
    if (!self)
        return;
    const QVariant width = evaluateAndWait(QStringLiteral("document.body.offsetWidth.toString()"));
    if (!self)
        return;
    if (const int pixels = width.toString().toInt(); pixels > 0)
        m_document.fitWindowToPage(pixels);
    // Images have made the page longer; but the user may have gone elsewhere meanwhile.
    if (!m_currentScrollPosition.isEmpty())
        evaluate(QStringLiteral("if (isAsShown()) ") + scrollingTo(m_currentScrollPosition));
}

void ViewController::restorePosition()
{
    if (!m_currentCaret.isEmpty())
        evaluate(scriptCall(QStringLiteral("restoreCaret"), m_currentCaret));
    emit selectionRestored();
    if (!m_currentScrollPosition.isEmpty())
        evaluate(scrollingTo(m_currentScrollPosition));
    evaluate(QStringLiteral("markAsShown()"));
    // Once that has been done, and outside of the engine's work.
    const QPointer<ViewController> self = this;
    ScriptCall::run(&m_webView->editorPage(), QStringLiteral("0"), [self, shows = m_shows](const QVariant&) {
        if (self)
            QMetaObject::invokeMethod(
                self, [self, shows] { self->goOnAfterHold(shows); }, Qt::QueuedConnection);
    });
}

void ViewController::rebuildAfterDeath()
{
    if (!m_sinceDeath.isValid() || m_sinceDeath.elapsed() > aRow)
        m_deaths = 0;
    m_sinceDeath.start();
    if (++m_deaths <= deathsInARow)
        QMetaObject::invokeMethod(
            this, [this] { show(Position::Keep); }, Qt::QueuedConnection);
    else
        showStopped();
}

void ViewController::showStopped()
{
    if (m_stopped || !m_contentView)
        return;
    m_webView->heldInput().clear();
    auto* notice = new StoppedNotice(m_contentView);
    m_stopped = notice;
    connect(notice, &StoppedNotice::reloadRequested, this, [this] {
        m_deaths = 0;
        show(Position::Keep);
    });
    notice->show();
}

// The caret's element is told after the markup in which its path counts.

void ViewController::takeActiveElement(const QList<int>& path)
{
    m_activeElement.assign(path.begin(), path.end());
    m_activeElementWaits = true;
    if (m_reader->isUpToDate())
        tellActiveElement();
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

// What was typed before is an edit of its own.
void ViewController::performNow(const QString& name, const QString& script)
{
    const QPointer<ViewController> self = this;
    catchUp();
    if (!self)
        return;
    evaluate(script);
    m_reader->nameChange(name);
}

void ViewController::performCommand(const QString& title)
{
    perform(title, scriptCall(QStringLiteral("doCommand"), title));
}

void ViewController::removeLink()
{
    performCommand(QStringLiteral("Unlink"));
}

void ViewController::applyStyle(QObject* sender)
{
    perform(titleOf(sender), scriptCall(QStringLiteral("applyStyle"), titleOf(sender)));
}

void ViewController::removeStyle(QObject* sender)
{
    perform(titleOf(sender), scriptCall(QStringLiteral("removeStyle"), titleOf(sender)));
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
    performCommand(titleOf(sender));
}

void ViewController::formatText(QObject* sender)
{
    performCommand(commandWordOf(sender));
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

LinkSheet* ViewController::linkSheet() const
{
    return m_links->sheet();
}

// Source and console

void ViewController::showSource()
{
    const QPointer<ViewController> self = this;
    catchUp();
    const QString source = self ? renderedMarkup() : QString();
    if (self && !source.isNull())
        m_sourcePanel->begin(source);
}

void ViewController::saveSource(const QString& source)
{
    m_document.setHTML(source.toStdString(), tr("Edit Source"));
    m_document.reload();
    m_document.buildCSSMenu();
}

void ViewController::showScriptConsole()
{
    m_console->show();
    m_console->raise();
}

void ViewController::runJS(const QString& script)
{
    const QPointer<ViewController> self = this;
    catchUp();
    if (!self)
        return;
    ScriptCall::run(&m_webView->editorPage(), script,
                    [console = QPointer(m_console)](const QVariant& answer) {
                        if (console)
                            console->showAnswer(answer);
                    });
    m_reader->nameChange(tr("Script"));
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
