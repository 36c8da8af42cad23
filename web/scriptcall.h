// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

class QObject;
class QWebEnginePage;

namespace luma {

/// Scripts evaluated in the editor's own script world of a page (QWebEngineScript::ApplicationWorld), which no
/// script of the page can reach. The engine answers questions in the order in which they are asked. Main
/// thread.
class ScriptCall final
{
public:
    using Answered = std::function<void(const QVariant& answer)>;

    /// Evaluates without waiting for an answer.
    static void run(QWebEnginePage* page, const QString& script);

    /// Evaluates, then calls `answered` once from the event loop; never if `context` has been deleted by then.
    /// The answer is invalid if the script failed or returns nothing, the page's process died, the page was
    /// deleted, or a load discarded the question.
    static void ask(QWebEnginePage* page, const QString& script, QObject* context, const Answered& answered);

    /// The same, blocking, for callers that need the answer at once: see waitInLoop().
    static QVariant wait(QWebEnginePage* page, const QString& script);

    /// Calls `begin` and runs a nested event loop, the only one in the program, until `done` is called,
    /// `source` is deleted or the application quits. Other events are processed meanwhile, so the caller must
    /// expect anything to have changed, its own deletion included. `loop` is the context for what `begin`
    /// starts. Never call it from a signal or callback of the engine's page or channel: the engine answers
    /// nothing until that returns.
    using Done = std::function<void()>;
    static void waitInLoop(const QObject* source,
                           const std::function<void(QObject* loop, const Done& done)>& begin);

    /// The answer as a list of strings; nullopt if it is anything else.
    static std::optional<QStringList> strings(const QVariant& answer);
    /// The answer as the path of an element: its place among the elements of each level. Empty if it is no list.
    static std::vector<int> path(const QVariant& answer);
};

/// `text` for use between single quotes in a script. Plain text stays as it is; quotes, backslashes, line ends
/// and everything else that would end the literal (ECMA-262, String Literals) or a script element ("</") is
/// escaped, so the script gets exactly `text` and none of it is run.
QString quotedForScript(const QString& text);

/// The call NAME('ARGUMENT').
QString scriptCall(const QString& function, const QString& argument);
/// The call NAME('FIRST', 'SECOND').
QString scriptCall(const QString& function, const QString& first, const QString& second);

} // namespace luma
