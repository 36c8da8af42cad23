// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QWidget>

namespace luma::test {

/// The shown top-level window of a type, with that object name if one is given; null if there is none.
template <class Window>
Window* shownWindow(const QString& name = {})
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* const found = qobject_cast<Window*>(window);
        if (found && found->isVisible() && (name.isEmpty() || found->objectName() == name))
            return found;
    }
    return nullptr;
}

} // namespace luma::test
