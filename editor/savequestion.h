// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

class QObject;
class QWidget;

namespace luma {

/// Questions before saving. Each opens a message box with two buttons on `window` and calls `then` if the user
/// agrees and `context` still exists. Main thread.
class SaveQuestion final
{
public:
    struct Texts
    {
        QString question;
        QString consequence;
        QString button; // agrees
    };
    /// `name` is the box's object name.
    static void ask(QWidget* window, QObject* context, const QString& name, const Texts& texts,
                    const std::function<void()>& then);

    /// Whether another program's version of a file may be replaced.
    static void askToReplace(QWidget* window, QObject* context, const QString& file,
                             const std::function<void()>& then);
};

} // namespace luma
