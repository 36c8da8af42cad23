// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

namespace luma {

/// The window's report of one long job: a status line, a bar that runs, a log, Stop and OK. Main thread only;
/// jobs get here by onMain. One job at a time uses it.
class ProgressReporter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// A job begins: the status line is set, the log emptied, OK disabled, Stop enabled, the bar runs; the
    /// panel opens as a sheet on the window unless the window shows a sheet already.
    virtual void begin(const QString& status) = 0;
    /// Appends to the log, in which every line ends with a line feed, and scrolls to its end.
    virtual void append(const QString& text) = 0;
    /// The job has ended: the bar stops, Stop is disabled, OK enabled.
    virtual void finish() = 0;
    /// Between begin() and finish().
    [[nodiscard]] virtual bool isRunning() const = 0;
    /// Line `number` of the log, counted from 0, without its line feed; empty when there is none.
    [[nodiscard]] virtual QString lineText(int number) const = 0;

signals:
    /// begin() was called.
    void began();
    void stopRequested();
    /// The user clicked line `number` of the log.
    void lineActivated(int number);
};

/// What a pane asks of the window that holds it. Main thread only; outlives its panes.
class PaneHost
{
public:
    virtual ~PaneHost() = default;

    /// A pane has connected to a server: find out whether rsync over ssh can be used.
    virtual void checkConnectionOK() = 0;
    virtual ProgressReporter& progress() = 0;

protected:
    PaneHost() = default;
    PaneHost(const PaneHost&) = default;
    PaneHost& operator=(const PaneHost&) = default;
};

} // namespace luma
