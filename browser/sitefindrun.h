// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "links/sitesearch.h"

#include <QObject>

#include <filesystem>
#include <memory>
#include <vector>

namespace luma {

/// A search of a site, made in the background: what it finds waits here to be taken in batches. A new run, stop() and
/// destruction drop the one before, which then ends by itself. It ends early when it has found more than a table is good for.
/// Main thread only.
class SiteFindRun final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t mostPlaces = 100'000;

    explicit SiteFindRun(QObject* parent) : QObject(parent) {}
    ~SiteFindRun() override { stop(); }

    void start(const std::filesystem::path& site, const SiteQuery& query);
    /// Drops what has not been taken.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_item != nullptr; }

    /// The files found since the last call, in the order of their paths.
    std::vector<SearchedFile> take();

signals:
    /// The search is complete, or failed with `error`; the last files can be taken now.
    void ended(const QString& error);

private:
    struct Found;

    WorkItemPointer m_item;
    std::shared_ptr<Found> m_found;
};

} // namespace luma
