// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "links/webrules.h"
#include "page/pagecheck.h"
#include "page/sitefolder.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QTimer>

#include <functional>
#include <vector>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QToolButton;
class QVariant;
class QWidget;

namespace luma {

class OutlineModel;
class OutlineSelection;
class PageTree;
class ViewController;

/// The page check below the rendering: a list of what is wrong with the page, whose rows select the element. While it is
/// shown, the page is checked again soon after each change. The tree is looked at at once, the links on a thread of the
/// pool, and the contrast by the rendering, in slices; the list changes when all three are done. Main thread.
class CheckPanel final : public QObject
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
    struct Parts
    {
        const PageTree& tree;
        const OutlineModel& outline;
        OutlineSelection& selection;
        ViewController& rendering;
        std::function<SiteFolder()> place; // of the page
        std::function<WebRules()> linkRules;
    };

    /// All of them outlive it.
    CheckPanel(const Controls& controls, const Parts& parts, QObject* parent);
    ~CheckPanel() override;

    /// Shows the panel, with the focus in its list, or hides it and gives the focus to the page.
    void setShown(bool shown);
    /// The page, its style sheets or the site have changed.
    void noteChange();

signals:
    /// The user has closed it.
    void closed();

private:
    void check();
    void checkLinks();
    void checkContrast(bool fromStart);
    void takeContrasts(const QVariant& answer);
    void finish(std::vector<PageFinding> found);
    void show();
    void addRow(const PageFinding& finding);
    void selectElement(const QListWidgetItem* row);

    Controls m_controls;
    Parts m_parts;
    QTimer m_delay;
    WorkItemPointer m_job;
    int m_checks = 0;  // tells answers to an earlier check from those to this one
    int m_waiting = 0; // parts of the check that are not done
    std::vector<PageFinding> m_found;
    std::vector<QPersistentModelIndex> m_rows; // of the outline, by row of the list
};

} // namespace luma
