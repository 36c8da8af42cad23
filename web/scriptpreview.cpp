// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/scriptpreview.h"

#include "web/pagescheme.h"
#include "web/previewpage.h"
#include "web/previewprofile.h"

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWebEngineScript>
#include <QWebEngineView>

#include <csignal>
#include <utility>

namespace luma {

namespace {

constexpr int pingInterval = 3000;     // milliseconds
constexpr int mostMessages = 500;      // what comes later is counted only
constexpr qsizetype longestText = 400; // characters of a message

QString shownAddress(const QUrl& url)
{
    if (url.scheme().toLatin1() != PageScheme::name())
        return url.toDisplayString();
    const QString path = url.path();
    return path.startsWith(QLatin1String("/:/")) ? path.mid(2) : path;
}

} // namespace

ScriptPreview::ScriptPreview(const PreviewSource& page) : m_profile(std::make_unique<PreviewProfile>())
{
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("scriptPreview"));
    resize(1000, 720);
    createView();
    createActions();
    connectPage();
    m_ping.setInterval(pingInterval);
    connect(&m_ping, &QTimer::timeout, this, &ScriptPreview::ping);
    // The window may be shown once the page is loaded, whose scripts get their size and are told that they are seen.
    (void)grab();
    showPage(page);
    m_page->setVisible(true);
}

ScriptPreview::~ScriptPreview()
{
    m_page->disconnect(this);
    m_profile->disconnect(this);
    stop(); // a page whose script runs would let the engine wait
    delete m_page;
}

void ScriptPreview::createView()
{
    m_page = new PreviewPage(*m_profile);
    auto* const view = new QWebEngineView;
    view->setObjectName(QStringLiteral("previewView"));
    view->setAccessibleName(tr("Preview with scripts"));
    view->setContextMenuPolicy(Qt::NoContextMenu);
    view->setAcceptDrops(false);
    view->setPage(m_page);
    // The engine's own widget, a new one after the process was replaced.
    connect(m_page, &QWebEnginePage::loadFinished, view, [view] {
        if (view->focusProxy())
            view->focusProxy()->setAccessibleName(view->accessibleName());
    });
    m_messages = new QListWidget;
    m_messages->setObjectName(QStringLiteral("previewMessages"));
    m_messages->setAccessibleName(tr("Refused requests and messages of scripts"));
    m_messages->setTextElideMode(Qt::ElideMiddle);
    m_messages->setUniformItemSizes(true);
    m_messages->hide();
    m_state = new QLabel;
    m_state->setObjectName(QStringLiteral("previewState"));
    m_state->setTextFormat(Qt::PlainText);
    m_state->setWordWrap(true);
    m_state->setContentsMargins(8, 3, 8, 3);
    auto* const split = new QSplitter(Qt::Vertical);
    split->addWidget(view);
    split->addWidget(m_messages);
    split->setStretchFactor(0, 1);
    split->setSizes({height() * 4 / 5, height() / 5});
    auto* const all = new QWidget;
    auto* const layout = new QVBoxLayout(all);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(split, 1);
    layout->addWidget(m_state);
    setCentralWidget(all);
    view->setFocus();
}

void ScriptPreview::createActions()
{
    QToolBar* const bar = addToolBar(tr("Preview"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    const auto add = [this, bar](const QString& text, const QString& tip, const QList<QKeySequence>& keys,
                                 void (ScriptPreview::*does)()) {
        auto* const action = new QAction(text, this);
        action->setShortcuts(keys);
        action->setToolTip(tip +
                           QStringLiteral(" (%1)").arg(keys.first().toString(QKeySequence::NativeText)));
        connect(action, &QAction::triggered, this, does);
        bar->addAction(action);
    };
    add(tr("Reload"), tr("Show the page as it is in the editor now"), {Qt::Key_F5, Qt::CTRL | Qt::Key_R},
        &ScriptPreview::pageWanted);
    add(tr("Stop Scripts"), tr("End everything that runs in the preview"), {Qt::Key_Escape},
        &ScriptPreview::stop);
    auto* const closing = new QAction(tr("Close"), this);
    closing->setShortcut(Qt::CTRL | Qt::Key_W);
    connect(closing, &QAction::triggered, this, &QWidget::close);
    auto* const quitting = new QAction(tr("Quit"), this);
    quitting->setShortcut(Qt::CTRL | Qt::Key_Q);
    connect(quitting, &QAction::triggered, this, &ScriptPreview::quitRequested);
    addActions({closing, quitting});
}

void ScriptPreview::connectPage()
{
    const auto refuse = [this](const QUrl& url) {
        const bool isFile = url.scheme().toLatin1() == PageScheme::name();
        list(isFile ? tr("Not found in the site") : tr("Refused"), shownAddress(url));
    };
    connect(m_profile.get(), &PreviewProfile::refused, this, refuse);
    connect(m_page, &PreviewPage::refused, this, refuse);
    connect(m_page, &PreviewPage::windowRefused, this,
            [this](const QUrl& url) { list(tr("Window not opened"), shownAddress(url)); });
    connect(m_page, &PreviewPage::said, this, [this](const QString& text) { list(tr("Dialog"), text); });
    connect(m_page, &PreviewPage::complained, this, [this](const QString& text, int line) {
        list(tr("Error"), line > 0 ? tr("line %1: %2").arg(line).arg(text) : text);
    });
    connect(m_page, &QWebEnginePage::titleChanged, this, &ScriptPreview::updateTitle);
    connect(m_page, &QWebEnginePage::loadFinished, this, [this] { m_isAsked = false; });
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this, [this] {
        m_ping.stop();
        m_state->setText(m_isStopped ? tr("The scripts were stopped. Reload starts the page anew.")
                                     : tr("The page has ended by itself. Reload starts it anew."));
    });
}

void ScriptPreview::showPage(const PreviewSource& page)
{
    m_isStopped = false;
    m_isAsked = false;
    m_messages->clear();
    m_messages->hide();
    m_state->setText(
        tr("Scripts run here. Requests to the network and for files outside the site are refused."));
    m_page->show(page);
    m_ping.start();
    updateTitle();
}

// Only this page runs in the process, as it is the only one of its profile.
void ScriptPreview::stop()
{
    m_isStopped = true;
    if (const qint64 process = m_page->renderProcessPid(); process > 0)
        ::kill(static_cast<pid_t>(process), SIGKILL);
}

void ScriptPreview::ping()
{
    if (std::exchange(m_isAsked, true)) {
        m_state->setText(tr("A script does not end. Stop Scripts (Escape) ends it."));
        return;
    }
    m_page->runJavaScript(QStringLiteral("true"), QWebEngineScript::ApplicationWorld,
                          [self = QPointer(this)](const QVariant& answer) {
                              if (self && answer.isValid())
                                  self->m_isAsked = false;
                          });
}

void ScriptPreview::list(const QString& kind, const QString& text)
{
    if (m_messages->count() > mostMessages)
        return;
    QString line = kind + QStringLiteral(": ") + text.left(10 * longestText).simplified().left(longestText);
    if (m_messages->count() == mostMessages)
        line = tr("There is more, which is not listed.");
    auto* const item = new QListWidgetItem(line, m_messages);
    item->setToolTip(line.toHtmlEscaped());
    m_messages->show();
}

void ScriptPreview::updateTitle()
{
    const QString title = m_page->title();
    setWindowTitle(title.isEmpty() || title.startsWith(QLatin1String("luma:"))
                       ? tr("Preview with Scripts")
                       : tr("%1 \u2013 Preview with Scripts").arg(title));
}

} // namespace luma
