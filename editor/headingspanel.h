// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QTimer>

#include <vector>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QToolButton;
class QWidget;

namespace luma {

class OutlineModel;
class OutlineSelection;
class PageTree;

/// The headings of the page below its outline: a list whose rows select the element, indented by level. A heading that leaves
/// out levels is marked. The list follows the page soon after each change. Main thread.
class HeadingsPanel final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QWidget* pane;
        QListWidget* list;
        QLabel* result;
        QToolButton* closeButton;
    };

    /// All of them outlive it.
    HeadingsPanel(const Controls& controls, const PageTree& tree, const OutlineModel& outline,
                  OutlineSelection& selection, QObject* parent);

    /// Shows the panel, with the focus in its list, or hides it.
    void setShown(bool shown);

signals:
    /// The user has closed it.
    void closed();

private:
    void fill();
    void markCurrent();
    void choose(const QListWidgetItem* row);

    Controls m_controls;
    const PageTree& m_tree;
    const OutlineModel& m_outline;
    OutlineSelection& m_selection;
    QTimer m_delay;
    std::vector<QPersistentModelIndex> m_rows; // of the outline, by row of the list
};

} // namespace luma
