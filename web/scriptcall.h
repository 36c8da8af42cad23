// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

class QWebEnginePage;

namespace luma {

/// Scripts evaluated in the editor's own script world of a page (QWebEngineScript::ApplicationWorld), where
/// no script of the page can reach. Main thread.
class ScriptCall final
{
public:
    /// Evaluates and forgets.
    static void run(QWebEnginePage* page, const QString& script);

    /// Evaluates; `answered` gets the answer, or an invalid value when the script failed or the page went. It
    /// may not be called at all when the page loads something else first.
    static void run(QWebEnginePage* page, const QString& script,
                    const std::function<void(const QVariant&)>& answered);

    /// Evaluates and waits for the answer in a nested event loop, the only one of the house: other events are
    /// worked off meanwhile, so whoever calls must expect anything to have happened, its window's end too.
    /// An invalid value comes back when the script failed or has no answer, the page's process dies, the page
    /// is deleted or loads something that takes the question with it, or the application quits. Calls may be
    /// nested. Never call it from within a signal or callback of the engine's page or channel: the engine
    /// answers nothing while it is at work itself. Queue the call instead.
    static QVariant wait(QWebEnginePage* page, const QString& script);

    /// The answer as a list of strings; nothing when it is anything else.
    static std::optional<QStringList> strings(const QVariant& answer);
};

} // namespace luma
