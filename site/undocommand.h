// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class QAction;
class QMenu;

namespace luma {

/// A window's command Undo: takes back the last of what was added, and then the moves of the site that were made before the
/// window opened. The menu says which comes next. Main thread only.
class UndoCommand final : public QObject
{
    Q_OBJECT

public:
    /// `action` is an entry of `menu`; both outlive this.
    UndoCommand(QAction& action, QMenu& menu, QObject* parent);

    /// `undo`, called once, begins to take back what `title` names: "Rename".
    void add(const QString& title, const std::function<void()>& undo);
    /// Takes the last one back.
    void run();
    /// The answer to lookRequested().
    void setHasOlder(bool hasOlder);

signals:
    /// Something else is taken back next.
    void changed();
    /// Nothing that was added is left: an older move is to be taken back.
    void olderRequested();
    /// The menu opens and has to know whether there is an older move.
    void lookRequested();

private:
    struct Step
    {
        QString title;
        std::function<void()> undo;
    };

    QAction& m_action;
    QMenu& m_menu;
    std::vector<Step> m_steps; // the last at the end

    void update();
};

} // namespace luma
