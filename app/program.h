// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/commandline.h"
#include "app/documentcontroller.h"
#include "app/lumaappdelegate.h"
#include "app/pagewindows.h"
#include "app/preferences.h"
#include "base/quitsignals.h"

namespace luma {

/// The application put together: preferences, document controller and delegate, joined to the rooms below and
/// to the desktop. It lives inside the application object's life. Main thread only.
class Program final : public QObject
{
    Q_OBJECT

public:
    explicit Program(const QString& preferencesFile = Preferences::defaultFile());

    LUMAAppDelegate& delegate() { return m_delegate; }
    DocumentController& documents() { return m_documents; }

    /// Shows what the command line asks for. An error is for standard error; nothing is open then.
    Result<void> launch(const CommandLine& line);

    /// Saves the list, ends the watchers, and releases every job and child that still runs. Also called at
    /// quit.
    void terminate();

private:
    Result<void> openFolders(const CommandLine& line);
    /// Shows the site's window; its title, the destination's server, is how it is found again.
    void openSite(const SiteList::Record& siteDict);
    void openFile(const std::filesystem::path& file, const std::filesystem::path& siteFolder);

    LUMAAppDelegate::Services services();

    QuitSignals m_quitSignals;
    Preferences m_preferences;
    DocumentController m_documents;
    PageWindows m_pages;
    LUMAAppDelegate m_delegate;
    bool m_terminated = false;
};

} // namespace luma
