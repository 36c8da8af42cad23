// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/endpointform.h"
#include "app/newsiteassistant.h"
#include "app/preferences.h"
#include "app/sitelist.h"
#include "app/siteliststore.h"
#include "app/sitepasswords.h"
#include "app/versioncheck.h"
#include "shell/commandrunner.h"

#include <QFileDialog>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <memory>

class QUrl;

namespace luma {

class SiteListWindow;

/// Keeps the list of sites and its window, opens sites, and checks for a newer version. Lives for the whole
/// run; called in this order: will-finish-launching, did-finish-launching, the user's actions,
/// will-terminate. Main thread only.
class LUMAAppDelegate final : public QObject
{
    Q_OBJECT

public:
    /// What the delegate needs of other rooms and the desktop; a seam for tests.
    struct Services
    {
        CommandRunner shell; ///< runs zsh
        /// Shows a site's window, titled with the destination's server, and adds it with its record to the
        /// WindowRegistry.
        std::function<void(const SiteList::Record& siteDict)> showSite;
        std::function<bool(const QUrl& url)> openUrl;
        /// Keeps the passwords; without one they are stored in the list.
        std::shared_ptr<const SecretStore> secrets = nullptr;
        /// What the test of a new site's connection mounts with.
        NewSiteAssistant::MounterSource mounter = {};
    };

    /// `preferences` outlives the delegate and starts with initialValues().
    LUMAAppDelegate(Preferences& preferences, Services services, QObject* parent = nullptr);
    ~LUMAAppDelegate() override;

    /// The preferences of a user who has stored none.
    static QVariantMap initialValues();
    /// Ends every folder watcher left over from an earlier run, or still running at quit: any process with
    /// the watcher's name in its command line. Blocks until done.
    static void endStrayWatchers(const CommandRunner& shell);

    [[nodiscard]] SiteList& sites() { return sitesArrayController; }
    [[nodiscard]] SiteListWindow& siteListWindow() const { return *window; }

    /// Ends stray folder watchers.
    void applicationWillFinishLaunching() const;
    /// Loads the list; its window can then be shown.
    void applicationDidFinishLaunching();
    /// Saves a list that has changed, then ends the folder watchers. An error is for the console, for no window
    /// is open.
    Result<void> applicationWillTerminate();

    /// Opens the sites that noteOpenSites() has noted, if the user wants that.
    void reopenSites();
    /// Called before windows close because the application quits.
    void noteOpenSites();

    /// Opens the selected site, or brings its window to the front. Opens it later if its password has to be read
    /// first.
    void handleDoubleClick();
    /// The same for a site of the list.
    void open(const SiteList::Record& record);
    /// Appends a site from the template and focuses its name.
    void add();
    /// Asks for a new site's folder and server, or lets the user skip that and fill in the form of add().
    void newSite();
    /// Copies the sample site into the user's documents, if it isn't there, and opens it.
    void openSampleSite();
    /// Appends a copy of the selected site, once its password has been read.
    void duplicate();
    /// Adds the sites of a file that exportSites() has written, and selects the first of them.
    Result<void> importFrom(const QString& file);
    /// Asks whether to do that, naming the sites, or says why it can't be done; in sheets of the list's window.
    void offerImport(const QString& file);
    /// Writes all sites to a file, without their passwords.
    [[nodiscard]] Result<void> exportTo(const QString& file) const;
    /// The same with a file that the user chooses.
    void importSites();
    void exportSites();
    /// Asks, then removes the selected record, but never the last one.
    void remove();
    /// Takes back the last removal of a record or change of the list's order and folders.
    void undo();
    /// Lets the user choose the folder of one side of the selected site.
    void getPath(SiteSide side);
    /// Opens the product's page in the browser.
    void loadURL() const;
    void checkForUpdate();
    void showPreferences();

private:
    struct UndoStep
    {
        QString text;
        std::function<void()> undo;
    };

    void connectWindow();
    void openSite(const SiteList::Record& record);
    void addCopyOf(const SiteRecord& record);
    void chooseFile(const QString& title, QFileDialog::AcceptMode mode,
                    const std::function<Result<void>(const QString&)>& use);
    void addAndSelect(const QVariantMap& record);
    void addSites(const QList<QVariantMap>& records);
    void warnOfLastRecord();
    void removeRecord(const SiteList::Record& record);
    void putBack(int row, const SiteList::Record& record);
    void addUndo(const QString& text, std::function<void()> undo);
    void showUndo();
    void showNotice(const std::optional<VersionCheck::Notice>& notice);

    Preferences& m_preferences;
    Services m_services;
    SiteList sitesArrayController;
    SitePasswords m_passwords;
    SiteListStore m_store;
    std::unique_ptr<SiteListWindow> window;
    std::vector<UndoStep> m_undoSteps; ///< the latest last
    QList<SiteList::Record> m_opening; ///< sites whose passwords are being read
};

} // namespace luma
