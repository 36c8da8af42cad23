// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/undocommand.h"

#include <QAction>
#include <QMenu>

#include <utility>

namespace luma {

UndoCommand::UndoCommand(QAction& action, QMenu& menu, QObject* parent)
    : QObject(parent), m_action(action), m_menu(menu)
{
    connect(&action, &QAction::triggered, this, &UndoCommand::run);
    connect(&menu, &QMenu::aboutToShow, this, [this] {
        if (m_steps.empty())
            emit lookRequested();
    });
    // Another program may move files while the menu is closed, and the key must work then.
    connect(&menu, &QMenu::aboutToHide, &action, [&action] { action.setEnabled(true); });
}

void UndoCommand::add(const QString& title, const std::function<void()>& undo)
{
    constexpr std::size_t mostSteps = 100;
    m_steps.push_back({title, undo});
    if (m_steps.size() > mostSteps)
        m_steps.erase(m_steps.begin());
    update();
}

void UndoCommand::run()
{
    if (m_steps.empty()) {
        emit olderRequested();
        return;
    }
    const Step last = std::move(m_steps.back());
    m_steps.pop_back();
    update();
    last.undo();
}

void UndoCommand::setHasOlder(bool hasOlder)
{
    m_action.setEnabled(hasOlder || !m_steps.empty() || !m_menu.isVisible());
}

void UndoCommand::update()
{
    m_action.setEnabled(true);
    m_action.setText(tr("&Undo %1").arg(m_steps.empty() ? tr("Move") : m_steps.back().title));
    emit changed();
}

} // namespace luma
