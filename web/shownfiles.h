// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <filesystem>
#include <functional>

namespace luma {

class EditorPage;
class SiteFolder;

/// Watches the style sheets and images of the page shown, and makes the page load them again when they have changed on
/// disk, in place. Main thread.
class ShownFiles final : public QObject
{
    Q_OBJECT

public:
    /// `site` returns the page's location, against which addresses are resolved. The page outlives it.
    ShownFiles(EditorPage& page, std::function<SiteFolder()> site, QObject* parent);

    /// Asks the page which files it shows.
    void update();
    /// The same, once for a burst of changes.
    void updateSoon() { m_update.start(); }
    /// The file has changed; the page need not show it.
    void renew(const std::filesystem::path& file);

private:
    void watch(const QStringList& addresses);
    void noteChange(const QString& file);
    void renewAll();
    void askIfLoaded();

    EditorPage& m_page;
    std::function<SiteFolder()> m_site;
    QFileSystemWatcher m_watcher;
    QHash<QString, QString> m_addresses; // by file
    QSet<QString> m_changed;
    bool m_isAsking = true; // changes wait until it is known which files are shown
    QTimer m_update;        // until the page is asked
    QTimer m_pause;         // until a burst of changes is over
    QTimer m_loading;       // until the next question whether the changed files are loaded
    int m_questionsLeft = 0;
};

} // namespace luma
