// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/consoleruns.h"

#include "web/catchup.h"
#include "web/editorpage.h"
#include "web/renderingreader.h"
#include "web/scriptconsole.h"

#include <chrono>
#include <csignal>

namespace luma {

namespace {

constexpr std::chrono::seconds longestScript{5};

} // namespace

ConsoleRuns::ConsoleRuns(ScriptConsole& console, EditorPage& page, CatchUp& catchUp, RenderingReader& reader,
                         QObject* parent)
    : QObject(parent), m_console(console), m_page(page), m_catchUp(catchUp), m_reader(reader)
{
    m_watchdog.setSingleShot(true);
    connect(&m_watchdog, &QTimer::timeout, this, &ConsoleRuns::stop);
    connect(&m_console, &ScriptConsole::runRequested, this, &ConsoleRuns::run);
    connect(&m_page, &EditorPage::scriptMessage, &m_console, &ScriptConsole::addMessage);
}

void ConsoleRuns::run(const QString& script)
{
    m_catchUp.whenCaughtUp(this, [this, script] {
        m_watchdog.start(longestScript);
        m_reader.run(script, tr("Script"), [this](const QVariant& answer) {
            if (m_watchdog.isActive())
                m_console.showAnswer(answer);
            m_watchdog.stop();
        });
    });
}

// Nothing else ends a script; until then the page answers nothing.
void ConsoleRuns::stop()
{
    m_console.addMessage(
        tr("The script was stopped, as it did not end within %1 seconds. The page is shown as it was before.")
            .arg(longestScript.count()));
    if (const qint64 process = m_page.renderProcessPid(); process > 0)
        ::kill(static_cast<pid_t>(process), SIGKILL);
}

} // namespace luma
