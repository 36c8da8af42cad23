// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"
#include "app/sitelist.h"
#include "app/versioncheck.h"
#include "shell/commandrunner.h"

#include <QObject>

#include <memory>

class QUrl;

namespace luma {

class SiteListWindow;

/// Starts the program and ends it, keeps the list of sites and its window, opens a site, checks for a newer
/// version. It lives for the whole run. Order: will-finish-launching, did-finish-launching, the user's
/// actions, will-terminate. An action takes its sender, which may be null. Main thread only.
class LUMAAppDelegate final : public QObject
{
    Q_OBJECT

public:
    /// What the delegate needs of the rooms and the desktop, so that it knows neither and a test can stand in
    /// for them.
    struct Services
    {
        CommandRunner shell; ///< runs zsh
        /// Shows a site's window and enters it in the WindowRegistry; its title is the destination's server.
        std::function<void(const SiteList::Record& siteDict)> showSite;
        std::function<bool(const QUrl& url)> openUrl;
    };

    /// `preferences` outlives the delegate.
    LUMAAppDelegate(Preferences& preferences, Services services, QObject* parent = nullptr);
    ~LUMAAppDelegate() override;

    [[nodiscard]] SiteList& sites() { return sitesArrayController; }
    [[nodiscard]] SiteListWindow& siteListWindow() const { return *window; }

    /// Ends stray folder watchers.
    void applicationWillFinishLaunching() const;
    /// Loads the list. Its window is ready to be shown.
    void applicationDidFinishLaunching();
    static bool applicationShouldOpenUntitledFile() { return false; }
    /// Saves the list, then ends the folder watchers. The error, if any, is for the console: the windows are
    /// gone.
    Result<void> applicationWillTerminate();

public slots:
    void handleDoubleClick(QObject* sender);
    void weblog(QObject* sender);
    void add(QObject* sender);
    void remove(QObject* sender);
    /// The sender's property `tag`: 0 for the source's path, any other for the destination's.
    void getPath(QObject* sender);
    void loadURLWithSender(QObject* sender) const;
    void checkForUpdateWithSender(QObject* sender);
    void showPreferences(QObject* sender);
    void showAbout(QObject* sender);

private:
    void connectWindow();
    void loadList();
    void warnOfLastRecord();
    void showNotice(const std::optional<VersionCheck::Notice>& notice);

    Preferences& m_preferences;
    Services m_services;
    SiteList sitesArrayController;
    std::unique_ptr<SiteListWindow> window;
};

} // namespace luma
