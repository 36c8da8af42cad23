// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/program.h"

#include "app/helpmenu.h"
#include "app/sitelistwindow.h"
#include "app/sitetemplate.h"
#include "base/fileuri.h"
#include "base/mainhop.h"
#include "base/pathbelow.h"
#include "base/pathtext.h"
#include "base/resources.h"
#include "browser/displaytext.h"
#include "browser/endpoint.h"
#include "browser/movenotices.h"
#include "desktop/windowregistry.h"
#include "editor/htmldocument.h"
#include "editor/pagerecovery.h"
#include "shell/childprocess.h"
#include "shell/taskwrapper.h"
#include "site/haldendoc.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QThreadPool>
#include <QUrl>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace luma {

namespace {

// Everything is saved by then; a running job ends at its next page or block of a copy.
constexpr std::chrono::seconds longestWaitForJobs(5);

const QString siteLayoutKey = QStringLiteral("siteWindowLayout");

// The open window of a site with the endpoints of `record`, or null.
QWidget* windowShowing(const SiteRecord& record)
{
    for (QWidget* window : WindowRegistry::instance().windows()) {
        const auto* const site = qobject_cast<HaldenDoc*>(window);
        if (site && site->siteDict()->sourceDict()->values() == record.sourceDict()->values() &&
            site->siteDict()->destinationDict()->values() == record.destinationDict()->values())
            return window;
    }
    return nullptr;
}

// Of a site on this computer; else empty, which holds nothing.
std::filesystem::path sourceFolder(const SiteRecord& record)
{
    const ObservedDictionary& source = *record.sourceDict();
    if (source.string(endpoint::protocol) != endpoint::fileProtocol)
        return {};
    return pathOf(source.string(endpoint::path));
}

bool openWithDesktop(const std::filesystem::path& file)
{
    return QDesktopServices::openUrl(QUrl::fromEncoded(fileUri(file)));
}

} // namespace

Program::Program(const QString& preferencesFile, CommandRunner shell)
    : m_shell(shell ? std::move(shell) : shellRunner(resourceFolder())),
      m_preferences(preferencesFile, LUMAAppDelegate::initialValues()),
      m_documents(openWithDesktop,
                  [this](const std::filesystem::path& page, const std::filesystem::path& siteFolder,
                         QWidget* open) { return m_pages.open(page, siteFolder, open); }),
      m_pages(
          m_documents, m_preferences, [this](const std::filesystem::path& page) { return siteOf(page); },
          [this](const std::filesystem::path& page) { return linkRulesOf(page); }),
      m_moveNotices(std::make_shared<MoveNotices>()),
      m_delegate(m_preferences, services())
{
    connect(qApp, &QCoreApplication::aboutToQuit, this, &Program::terminate);
    qApp->installEventFilter(this);
    m_pages.follow(*m_moveNotices);
    connect(&m_pages, &PageWindows::publishRequested, this, &Program::publishPage);
    connect(&m_pages, &PageWindows::findInSiteRequested, this, &Program::findInSite);
    connect(&m_pages, &PageWindows::siteNamesRequested, this, [this](const std::filesystem::path& page) {
        if (HaldenDoc* const window = siteWindowOf(page, tr("Classes and IDs")))
            window->showNames();
    });
    m_delegate.applicationWillFinishLaunching();
    m_delegate.applicationDidFinishLaunching();
}

LUMAAppDelegate::Services Program::services()
{
    return {m_shell, [this](const SiteList::Record& siteDict) { openSite(siteDict); },
            [](const QUrl& url) { return QDesktopServices::openUrl(url); }, std::make_shared<SecretStore>(),
            [] { return HaldenDoc::standardServices().mounter; }};
}

Result<void> Program::launch(const CommandLine& line)
{
    const bool isFirst = !std::exchange(m_hasLaunched, true);
    // Before a page opens: what it keeps is not an earlier run's.
    if (isFirst)
        offerUnsavedPages();
    switch (line.request) {
    case CommandLine::Request::Folders:
        return openFolders(line);
    case CommandLine::Request::Page:
        return m_documents.open(line.page);
    case CommandLine::Request::Item:
        showItem(line.item);
        return {};
    case CommandLine::Request::Unusable:
        return Error{line.message};
    default:
        WindowRegistry::bringToFront(&m_delegate.siteListWindow());
        if (isFirst)
            m_delegate.reopenSites();
        return {};
    }
}

void Program::offerUnsavedPages()
{
    const std::vector<UnsavedPage> unsaved = PageRecovery::left();
    if (unsaved.empty())
        return;
    QStringList names;
    for (const UnsavedPage& page : unsaved)
        names.append(page.page.empty() ? tr("Untitled") : displayText(page.page.native()));
    auto* const box = new QMessageBox(QMessageBox::Question, tr("Unsaved pages"),
                                      tr("LUMA ended before the edits of these pages were saved."));
    box->setObjectName(QStringLiteral("unsavedPagesBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(names.join(u'\n'));
    const QPushButton* const open = box->addButton(tr("Open"), QMessageBox::AcceptRole);
    const QPushButton* const discard = box->addButton(tr("Discard"), QMessageBox::DestructiveRole);
    box->addButton(tr("Later"), QMessageBox::RejectRole);
    connect(open, &QPushButton::clicked, this, [this, unsaved] {
        for (const UnsavedPage& page : unsaved)
            m_pages.recover(page);
    });
    connect(discard, &QPushButton::clicked, this, [unsaved] {
        std::error_code ignored;
        for (const UnsavedPage& page : unsaved)
            std::filesystem::remove(page.record, ignored);
    });
    box->show();
}

SiteList::Record Program::siteWith(const std::filesystem::path& page)
{
    SiteList::Record site;
    std::size_t longest = 0;
    for (int row = 0; row < m_delegate.sites().rowCount(); ++row) {
        const auto& record = m_delegate.sites().record(row);
        const auto folder = sourceFolder(*record);
        if (isAtOrBelow(page.native(), folder.native()) && folder.native().size() > longest) {
            site = record;
            longest = folder.native().size();
        }
    }
    return site;
}

std::filesystem::path Program::siteOf(const std::filesystem::path& page)
{
    const SiteList::Record site = siteWith(page);
    return site ? sourceFolder(*site) : std::filesystem::path();
}

WebRules Program::linkRulesOf(const std::filesystem::path& page)
{
    WebRules rules = m_preferences.reportChoices().webRules;
    if (const SiteList::Record site = siteWith(page))
        rules.webAddresses = site->webAddresses();
    return rules;
}

HaldenDoc* Program::openWindowWith(const std::filesystem::path& item)
{
    HaldenDoc* window = nullptr;
    for (QWidget* open : WindowRegistry::instance().windows()) {
        auto* const site = qobject_cast<HaldenDoc*>(open);
        if (site && isAtOrBelow(item.native(), sourceFolder(*site->siteDict()).native()))
            window = site;
    }
    return window;
}

void Program::showItem(const std::filesystem::path& item)
{
    std::error_code ignored;
    if (item.extension() == ".lumasites" && std::filesystem::is_regular_file(item, ignored)) {
        WindowRegistry::bringToFront(&m_delegate.siteListWindow());
        m_delegate.offerImport(textOf(item));
        return;
    }
    if (HaldenDoc* const window = openWindowWith(item)) {
        WindowRegistry::bringToFront(window);
        window->showItem(item);
        return;
    }
    const SiteList::Record site = siteWith(item);
    if (!site) {
        sayNoSiteHas(item);
        return;
    }
    m_itemToShow = item;
    m_delegate.open(site);
    // Its password may have to be read first.
    if (!openWindowWith(item))
        WindowRegistry::bringToFront(&m_delegate.siteListWindow());
}

void Program::sayNoSiteHas(const std::filesystem::path& item)
{
    SiteListWindow& list = m_delegate.siteListWindow();
    WindowRegistry::bringToFront(&list);
    auto* const box = new QMessageBox(QMessageBox::Information, tr("Open"),
                                      tr("%1 is in no site of the list.").arg(displayText(item.native())),
                                      QMessageBox::Ok, &list);
    box->setObjectName(QStringLiteral("noSiteBox"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(
        tr("LUMA edits pages (.html, .xhtml, .xml) and shows other files and folders in the "
           "window of their site. Add the site with its folder first."));
    box->open();
}

void Program::publishPage(const std::filesystem::path& page)
{
    if (HaldenDoc* const window = siteWindowOf(page, tr("Publish Page")))
        window->publishPage(page);
}

void Program::findInSite(const std::filesystem::path& page, const QString& text)
{
    if (HaldenDoc* const window = siteWindowOf(page, tr("Find in Site")))
        window->findText(text);
}

// One that shows the page's folder, else one of the list's site.
HaldenDoc* Program::siteWindowOf(const std::filesystem::path& page, const QString& purpose)
{
    HaldenDoc* window = openWindowWith(page);
    const SiteList::Record site = siteWith(page);
    if (!window && site)
        window = openSite(site);
    if (window) {
        WindowRegistry::bringToFront(window);
        return window;
    }
    auto* const box = new QMessageBox(QMessageBox::Information, purpose,
                                      tr("No site in the list has a source folder with this page."),
                                      QMessageBox::Ok, m_documents.windowOf(page));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
    return nullptr;
}

Result<void> Program::openFolders(const CommandLine& line)
{
    const auto record = transientRecord(line.source, line.destination);
    if (!record)
        return record.error();
    const auto site = std::make_shared<SiteRecord>(*record);
    if (QWidget* const open = windowShowing(*site))
        WindowRegistry::bringToFront(open);
    else
        openSite(site);
    return {};
}

HaldenDoc* Program::openSite(const SiteList::Record& siteDict)
{
    HaldenDoc::Services services = HaldenDoc::standardServices();
    services.reportChoices = [this] { return m_preferences.reportChoices(); };
    services.stopAsking = [this] { m_preferences.setValue(Preferences::asksBeforeManyPages, false); };
    services.moveNotices = m_moveNotices;
    auto* const window = new HaldenDoc(siteDict, std::move(services));
    window->restoreLayoutState(m_preferences.value(siteLayoutKey).toByteArray());
    addHelpMenu(*window);
    connect(window, &HaldenDoc::windowWillClose, this,
            [this, window] { m_preferences.setValue(siteLayoutKey, window->layoutState()); });
    connect(window, &HaldenDoc::openRequested, this, &Program::openFile);
    connect(window, &HaldenDoc::placeRequested, this, &Program::openPlace);
    window->windowDidLoad();
    if (isAtOrBelow(m_itemToShow.native(), sourceFolder(*siteDict).native()))
        window->showItem(std::exchange(m_itemToShow, {}));
    return window;
}

void Program::openFile(const std::filesystem::path& file, const std::filesystem::path& siteFolder)
{
    if (const auto opened = m_documents.open(file, siteFolder); !opened)
        (void)std::fprintf(stderr, "luma: %s\n", opened.error().text.c_str());
}

void Program::openPlace(const std::filesystem::path& file, const std::filesystem::path& siteFolder,
                        unsigned line, unsigned column)
{
    if (file.extension() == ".css" && m_pages.showSheetPlace(file, line, column))
        return;
    openFile(file, siteFolder);
    if (auto* const page = qobject_cast<HTMLDocument*>(m_documents.windowOf(file)))
        page->showPlace(line, column);
}

// A key that a window's own action takes does not arrive as a key press.
bool Program::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Quit && watched == qApp)
        m_delegate.noteOpenSites();
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto* const key = static_cast<QKeyEvent*>(event);
    if (key->matches(QKeySequence::Close)) {
        static_cast<QWidget*>(watched)->window()->close();
        return true;
    }
    if (key->keyCombination() != (Qt::CTRL | Qt::Key_Q))
        return false;
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    return true;
}

void Program::terminate()
{
    if (std::exchange(m_terminated, true))
        return;
    if (const auto saved = m_delegate.applicationWillTerminate(); !saved)
        (void)std::fprintf(stderr, "luma: %s\n", saved.error().text.c_str());
    closeMainHop();
    terminateRunningChildren();
    // A file call to a server that no longer answers can't be stopped.
    if (!QThreadPool::globalInstance()->waitForDone(std::chrono::milliseconds(longestWaitForJobs).count())) {
        (void)std::fflush(nullptr);
        std::_Exit(EXIT_SUCCESS);
    }
}

} // namespace luma
