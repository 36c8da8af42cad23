// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/webrules.h"

#include <QObject>
#include <QString>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace luma {

class MoveNotices;

/// How a job has ended, for the window.
struct JobEnd
{
    enum class How : std::uint8_t { Done, Stopped, Failed };
    How how = How::Done;
    QString status = {};             // what has become of it; empty where the log alone says so
    bool isUndoable = false;         // what it did is the last thing that the window's Undo takes back
    std::function<void()> goOn = {}; // begins what was stopped once more; null where that can't be done
};

/// The window's report of one long job: a status line, a busy bar, a log, Stop and OK. Serves one job at a
/// time. Main thread only; jobs call it through onMain.
class ProgressReporter : public QObject
{
    Q_OBJECT

public:
    /// Where the user sees a job. The line at the foot of the window leaves the rest of the window usable and leads to the
    /// panel, which opens by itself when the job fails.
    enum class Place : std::uint8_t { Panel, Line };

    using QObject::QObject;

    /// Begins a job: sets the status line, empties the log, disables OK, enables Stop and starts the bar. The
    /// panel opens as a sheet, unless the window already shows one or the line is enough.
    virtual void begin(const QString& status, Place place) = 0;
    /// What the running job is at now, in place of the status that it began with.
    virtual void setStatus(const QString& status) = 0;
    /// Appends to the log, whose lines end with a line feed, and scrolls to its end.
    virtual void append(const QString& text) = 0;
    /// Ends the job: stops the bar, disables Stop, enables OK, and says how it ended.
    virtual void finish(const JobEnd& end) = 0;
    /// Between begin() and finish().
    [[nodiscard]] virtual bool isRunning() const = 0;
    /// Line `number` of the log, counted from 0, without its line feed; empty if there is no such line.
    [[nodiscard]] virtual QString lineText(int number) const = 0;

signals:
    /// begin() was called.
    void began();
    /// finish() was called; another job may begin.
    void ended();
    void stopRequested();
    /// The user clicked line `number` of the log.
    void lineActivated(int number);
};

/// What the user has chosen for the reports on a site.
struct ReportChoices
{
    LinkRules linkRules = LinkRules::Browser;
    WebRules webRules = {};       // for LinkRules::Browser
    QString excludedFolders = {}; // that the report on unlinked items skips, names separated by commas
    std::vector<std::string> keptItems = {}; // that it leaves out, too: subpaths, bytes
    /// A move that changes links on more pages is shown before it is carried out; nothing for never.
    std::optional<int> askAbove = std::nullopt;
};

/// What a pane needs of its window. Main thread only; outlives its panes.
class PaneHost
{
public:
    virtual ~PaneHost() = default;

    /// Called when a pane has connected to a server: checks whether rsync over ssh can be used.
    virtual void checkConnectionOK() = 0;
    virtual ProgressReporter& progress() = 0;
    /// Where the pane's jobs tell what becomes of files.
    virtual MoveNotices& moveNotices() = 0;
    [[nodiscard]] virtual ReportChoices reportChoices() const = 0;
    /// Stores ReportChoices::keptItems with the site.
    virtual void setKeptItems(const std::vector<std::string>& items) = 0;
    /// The user doesn't want to be asked as ReportChoices::askAbove says.
    virtual void stopAsking() = 0;
    /// The folders of all connected panes. What one of them has at a place stands for what another has there.
    [[nodiscard]] virtual std::vector<std::filesystem::path> siteFolders() const = 0;

protected:
    PaneHost() = default;
    PaneHost(const PaneHost&) = default;
    PaneHost& operator=(const PaneHost&) = default;
};

} // namespace luma
