// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "links/linkplan.h"

#include <QObject>

#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace luma {

class FilePlaces;
class MoveNotices;
class SiteLinks;

/// Notices where another program has moved or renamed items of a pane's site, and tells if pages still link to their old
/// places. Looks in the background, on copies of what it needs. Main thread only.
class OutsideMoves final : public QObject
{
    Q_OBJECT

public:
    /// Pages that are open follow their files through the notices.
    OutsideMoves(MoveNotices& notices, QObject* parent);
    ~OutsideMoves() override;

    /// Begins with the items that are in `site` now. What was found in another one is forgotten.
    void begin(const std::filesystem::path& site);
    void end();
    /// Items in these folders have changed, or anywhere without them. `links` are what is kept of the site's.
    void siteChanged(const std::optional<std::set<std::string>>& folders, const WebRules& rules,
                     std::shared_ptr<SiteLinks> links);
    /// What has moved since it was begun or forgotten, if pages link to it.
    [[nodiscard]] const std::vector<MovedItem>& found() const { return m_found; }
    /// The user has decided about what was found.
    void forgetFound();

signals:
    void foundChanged();

private:
    using Folders = std::optional<std::set<std::string>>;

    MoveNotices& m_notices;
    std::filesystem::path m_site;
    std::shared_ptr<FilePlaces> m_places; // while a job runs, only that uses it
    WorkItemPointer m_item;               // of the job that runs
    Folders m_waiting = std::set<std::string>();
    bool m_isWaiting = false;
    WebRules m_rules;
    std::shared_ptr<SiteLinks> m_links;
    std::vector<MovedItem> m_own;   // moved by us, and not seen on the disk yet
    std::vector<MovedItem> m_found; // moved by others; the last ones are perhaps not judged yet

    void noteOwn(const MovedItem& item);
    void look();
    void take(std::vector<MovedItem> moved);
    void add(const MovedItem& item);
    void judge();
};

} // namespace luma
