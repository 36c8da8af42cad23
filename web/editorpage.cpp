// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/editorpage.h"

#include "base/files.h"
#include "base/fileuri.h"
#include "base/folderreader.h"
#include "base/resources.h"
#include "web/pagescheme.h"
#include "web/scriptcall.h"

#include <QDesktopServices>
#include <QFile>
#include <QWebChannel>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace luma {

namespace {

constexpr int longestSilence = 250; // milliseconds
constexpr int fetchPause = 50;      // milliseconds

QWebEngineScript editorScript(const QString& name, const QString& source,
                              QWebEngineScript::InjectionPoint point)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(point);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setRunsOnSubFrames(false);
    return script;
}

// The channel's client script, a resource of Qt.
QString channelScript()
{
    QFile file(QStringLiteral(":/qtwebchannel/qwebchannel.js"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// In the order of their names; bridge.js comes last, as it reports the page ready. The others don't depend on
// the order: at the top they only declare, and listen to events.
std::vector<fs::path> pageSideScripts()
{
    const fs::path folder = resourceFolder() / "LUMAHTMLCSSJS";
    std::vector<fs::path> scripts;
    auto reader = FolderReader::open(folder.native());
    while (const auto entry = reader ? reader->next() : std::nullopt) {
        if (std::string_view(entry->name()).ends_with(".js"))
            scripts.push_back(folder / entry->name());
    }
    std::sort(scripts.begin(), scripts.end());
    std::stable_partition(scripts.begin(), scripts.end(),
                          [](const fs::path& script) { return script.filename() != "bridge.js"; });
    return scripts;
}

bool isForTheBrowser(const QUrl& url)
{
    static const QStringList schemes = {QStringLiteral("http"), QStringLiteral("https"),
                                        QStringLiteral("ftp"), QStringLiteral("mailto"),
                                        QStringLiteral("tel")};
    return schemes.contains(url.scheme());
}

// The desktop opens a file with the program for its type. Files that it might run instead are not opened.
bool mightRun(const fs::path& file)
{
    std::error_code error;
    const auto status = fs::status(file, error);
    const auto anyExecute = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    return error || file.extension() == ".desktop" ||
           (fs::is_regular_file(status) && (status.permissions() & anyExecute) != fs::perms::none);
}

} // namespace

EditorPage::EditorPage(EditorProfile& profile, QObject* parent)
    : GuardedPage(profile, parent), m_profile(profile), m_host(EditorProfile::newHost())
{
    m_bridge = new PageBridge(this);
    m_channel = new QWebChannel(this);
    m_channel->registerObject(QStringLiteral("bridge"), m_bridge);
    setWebChannel(m_channel, QWebEngineScript::ApplicationWorld);
    addEditorScripts();
    connectState();
}

EditorPage::~EditorPage()
{
    m_profile.files().withdraw(m_host);
}

void EditorPage::addEditorScripts()
{
    m_scripts.append(
        editorScript(QStringLiteral("qwebchannel.js"), channelScript(), QWebEngineScript::DocumentCreation));
    for (const fs::path& path : pageSideScripts()) {
        if (const auto source = readFile(path))
            m_scripts.append(editorScript(QString::fromStdString(path.filename().string()),
                                          QString::fromStdString(*source), QWebEngineScript::DocumentReady));
    }
    scripts().insert(m_scripts);
}

// The engine may not give them to a process that has replaced another (seen with Qt 6.4).
void EditorPage::addMissingScripts()
{
    ScriptCall::ask(this, QStringLiteral("typeof takeMessages"), this,
                    [this, generation = m_generation](const QVariant& type) {
                        if (generation != m_generation || type != QStringLiteral("undefined"))
                            return;
                        for (const QWebEngineScript& script : std::as_const(m_scripts))
                            ScriptCall::run(this, script.sourceCode());
                    });
}

void EditorPage::connectState()
{
    // The engine may not report the end of a load that another one overtook, or report one that is not the
    // last, so the page itself reports that it is ready, with its address.
    connect(m_bridge, &PageBridge::documentReady, this, [this](const QString& address) {
        if (QUrl(address) != m_address)
            return;
        m_complete = true;
        m_silence.stop();
        emit ready();
    });
    connect(m_bridge, &PageBridge::documentLoaded, this, [this](const QString& address) {
        m_isLoaded = m_complete && QUrl(address) == m_address;
        tellShown();
    });
    connect(this, &QWebEnginePage::loadFinished, this, &EditorPage::tellShown);
    watchChannel();
    connect(this, &QWebEnginePage::renderProcessTerminated, this, [this](RenderProcessTerminationStatus) {
        m_complete = false;
        m_isLoaded = false;
        m_silence.stop();
        m_fetch.stop();
        emit processDied();
    });
}

// The channel to a process that has replaced another may be dead (seen with Qt 6.4), and so is a new one.
// Then the page's messages are fetched.
void EditorPage::watchChannel()
{
    m_silence.setSingleShot(true);
    connect(&m_silence, &QTimer::timeout, this, [this] {
        m_deafProcess = renderProcessPid();
        m_fetch.start(fetchPause);
    });
    connect(&m_fetch, &QTimer::timeout, this, &EditorPage::fetchMessages);
    connect(this, &QWebEnginePage::loadFinished, this, [this](bool done) {
        if (!done || m_complete || url() != m_address)
            return;
        addMissingScripts();
        m_silence.start(renderProcessPid() == m_deafProcess ? 0 : longestSilence);
    });
}

void EditorPage::fetchMessages()
{
    if (std::exchange(m_isFetching, true))
        return;
    ScriptCall::ask(this, QStringLiteral("takeMessages()"), this,
                    [this, generation = m_generation](const QVariant& messages) {
                        if (generation != m_generation)
                            return;
                        m_isFetching = false;
                        m_bridge->takeMessages(messages);
                    });
}

void EditorPage::tellShown()
{
    if (!isLoading() && std::exchange(m_isLoaded, false))
        emit shown();
}

void EditorPage::show(const QByteArray& markup, const SiteFolder& files)
{
    m_files = files;
    m_complete = false;
    m_isLoaded = false;
    m_silence.stop();
    m_fetch.stop();
    m_isFetching = false;
    m_loadIsDue = true;
    ++m_generation;
    m_profile.files().serve(m_host, markup, files);
    m_address = SiteSchemeHandler::address(m_host, files.page());
    m_address.setQuery(QString::number(m_generation)); // Each page shown has its own address.
    load(m_address);
}

void EditorPage::setDraft(const std::filesystem::path& file, const std::optional<QByteArray>& text)
{
    m_profile.files().serveDraft(m_host, file, text);
}

QHash<QString, QByteArray> EditorPage::drafts() const
{
    return m_profile.files().drafts(m_host);
}

bool EditorPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame)
{
    if (type == NavigationTypeLinkClicked) {
        activateLink(url);
        return false;
    }
    // A frame may show a page of the site, but not go elsewhere.
    if (!isMainFrame)
        return type == NavigationTypeOther &&
               (PageScheme::isOfPage(url, m_host) || url.scheme() == QLatin1String("about"));
    // Only the page handed over last, and only once: requests for earlier ones may still arrive.
    if (!m_loadIsDue || type != NavigationTypeTyped || url != m_address)
        return false;
    m_loadIsDue = false;
    return true;
}

void EditorPage::activateLink(const QUrl& url)
{
    const QUrl address = addressForTheBrowser(url);
    if (address.isValid() && !address.isEmpty())
        QDesktopServices::openUrl(address);
}

QUrl EditorPage::addressForTheBrowser(const QUrl& url) const
{
    if (!PageScheme::isOfPage(url, m_host))
        return isForTheBrowser(url) ? url : QUrl();
    const auto file = m_files.fileAt(url.path(QUrl::FullyEncoded).toStdString());
    if (!file || !m_files.realPath(*file) || mightRun(*file))
        return {};
    QUrl address = QUrl::fromEncoded(fileUri(*file));
    if (*file != m_files.page())
        address.setQuery(url.query(QUrl::FullyEncoded));
    address.setFragment(url.fragment(QUrl::FullyEncoded));
    return address;
}

void EditorPage::javaScriptAlert(const QUrl&, const QString&) {}

bool EditorPage::javaScriptConfirm(const QUrl&, const QString&)
{
    return false;
}

bool EditorPage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*)
{
    return false;
}

void EditorPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                          int line, const QString& source)
{
    // The engine's complaints about the page don't matter here. Uncaught errors are the editor's, as no
    // script of the page runs.
    if (PageScheme::isOfPage(QUrl(source), m_host) && !message.startsWith(QLatin1String("Uncaught ")))
        return;
    if (level == ErrorMessageLevel && source.startsWith(QLatin1String("userscript:")))
        qWarning("%s:%d: %s", qUtf8Printable(source), line, qUtf8Printable(message));
    emit scriptMessage(message);
}

} // namespace luma
