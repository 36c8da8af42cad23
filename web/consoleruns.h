// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>

namespace luma {

class CatchUp;
class EditorPage;
class RenderingReader;
class ScriptConsole;

/// Runs the script console's scripts in the page, each after the edits before it, and shows their answers. A script that
/// does not end within seconds is stopped by ending the page's process; the page is then shown as it was before.
/// Main thread.
class ConsoleRuns final : public QObject
{
    Q_OBJECT

public:
    /// All arguments outlive it.
    ConsoleRuns(ScriptConsole& console, EditorPage& page, CatchUp& catchUp, RenderingReader& reader,
                QObject* parent);

private:
    void run(const QString& script);
    void stop();

    ScriptConsole& m_console;
    EditorPage& m_page;
    CatchUp& m_catchUp;
    RenderingReader& m_reader;
    QTimer m_watchdog; // runs while a script does
};

} // namespace luma
