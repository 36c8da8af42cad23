// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/commandline.h"
#include "app/documentcontroller.h"
#include "app/lumaappdelegate.h"
#include "app/pagewindows.h"
#include "app/preferences.h"
#include "base/quitsignals.h"
#include "shell/commandrunner.h"

namespace luma {

class HaldenDoc;
class MoveNotices;
struct WebRules;

/// The application: creates preferences, document controller and delegate, and connects them to the other
/// rooms and the desktop. Created after the application object and destroyed before it. Main thread only.
class Program final : public QObject
{
    Q_OBJECT

public:
    /// `shell` runs zsh; null for the real one.
    explicit Program(const QString& preferencesFile = defaultPreferencesFile(), CommandRunner shell = {});

    LUMAAppDelegate& delegate() { return m_delegate; }
    DocumentController& documents() { return m_documents; }

    /// Shows what the command line of this or a later start asks for; a site, page or list that is open
    /// already comes to the front. On an error, which is for standard error, nothing has been opened.
    Result<void> launch(const CommandLine& line);

    /// Saves the list and ends the watchers and all running jobs and child processes. Also called at quit;
    /// later calls do nothing. Ends the whole process if a job has not ended after five seconds.
    void terminate();

protected:
    /// Control+W closes and Control+Q quits in panels, sheets and dialogs too, which have no such actions. Also notes
    /// which sites are open when the application quits.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Result<void> openFolders(const CommandLine& line);
    /// Shows a new window for the site.
    HaldenDoc* openSite(const SiteList::Record& siteDict);
    void publishPage(const std::filesystem::path& page);
    void findInSite(const std::filesystem::path& page, const QString& text);
    /// A window of the page's site, in front; null after a message, titled `purpose`, if no site of the list has the page.
    HaldenDoc* siteWindowOf(const std::filesystem::path& page, const QString& purpose);
    /// Shows the item in the window of its site, or says that it is in none. A list of sites is offered for import.
    void showItem(const std::filesystem::path& item);
    void sayNoSiteHas(const std::filesystem::path& item);
    /// An open window whose source holds the item, or null.
    [[nodiscard]] static HaldenDoc* openWindowWith(const std::filesystem::path& item);
    void offerUnsavedPages();
    void openFile(const std::filesystem::path& file, const std::filesystem::path& siteFolder);
    /// The same, with the element at this place selected where the file is a page.
    void openPlace(const std::filesystem::path& file, const std::filesystem::path& siteFolder, unsigned line,
                   unsigned column);

    /// The innermost site in the list whose source holds the page; null if there is none.
    [[nodiscard]] SiteList::Record siteWith(const std::filesystem::path& page);
    /// Its folder, or nothing.
    [[nodiscard]] std::filesystem::path siteOf(const std::filesystem::path& page);
    /// As the preferences and the page's site say.
    [[nodiscard]] WebRules linkRulesOf(const std::filesystem::path& page);

    LUMAAppDelegate::Services services();

    CommandRunner m_shell;
    QuitSignals m_quitSignals;
    Preferences m_preferences;
    DocumentController m_documents;
    PageWindows m_pages;
    std::shared_ptr<MoveNotices> m_moveNotices;
    LUMAAppDelegate m_delegate;
    std::filesystem::path m_itemToShow; // until its site's window opens
    bool m_terminated = false;
    bool m_hasLaunched = false; // at least once
};

} // namespace luma
