// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "site/foldermarks.h"

#include <QObject>
#include <QTimer>

#include <map>

namespace luma {

class BrowserController;

/// Keeps the marks in a site's two panes up to date: whenever a folder is shown or listed again on either side, the
/// folders that are shown are compared in the background, one job at a time. Without a connection on both sides there
/// are no marks. Main thread only; may be destroyed at any time.
class PaneMarks final : public QObject
{
    Q_OBJECT

public:
    /// All outlive it.
    PaneMarks(BrowserController& source, BrowserController& destination, const SiteRecord& record,
              QObject* parent);
    ~PaneMarks() override;

    /// Compares again soon.
    void update();

private:
    using Marks = std::map<std::string, FolderMarks>; // by the folders' relative paths

    BrowserController& m_source;
    BrowserController& m_destination;
    const SiteRecord& m_record;
    QTimer m_soon;
    WorkItemPointer m_job;
    bool m_isAskedAgain = false;

    void begin();
    void end(const Marks& marks);
    static void show(BrowserController& pane, const Marks& marks, SideMarks FolderMarks::*side);
};

} // namespace luma
