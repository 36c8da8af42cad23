// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>

class QAction;
class QComboBox;
class QMenu;
class QToolBar;
class QToolButton;

namespace luma {

class ViewController;

/// The formatting commands of a page's window, in the bar above the rendering and in the menu: adds the box of block
/// formats, the lists and the rendering's two menus to those of the layout, and shows which formats the selection has.
/// Main thread.
class FormatBar final : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        QToolBar& bar;
        QMenu& menu;
        QList<QAction*> styles; // of the bar; each has the title of its format as its "commandWord"
        ViewController& rendering;
    };

    /// All parts outlive it.
    FormatBar(const Parts& parts, QObject* parent);

private:
    void fillBar();
    void fillMenu();
    void createBlockBox();
    void show(const QStringList& formats);
    void applyBlock(int entry);

    Parts m_parts;
    QComboBox* m_blocks = nullptr;
    QToolButton* m_justification = nullptr;
};

} // namespace luma
