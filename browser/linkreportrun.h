// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "links/sitelinks.h"
#include "links/webrules.h"

#include <QObject>

#include <filesystem>
#include <memory>
#include <vector>

namespace luma {

/// A link report, made in the background: what it finds waits here to be taken in batches. A new run, stop() and
/// destruction drop the one before, which then ends by itself. Main thread only.
class LinkReportRun final : public QObject
{
    Q_OBJECT

public:
    enum class Kind { MissingLinks, LinksFrom, LinksTo };

    struct Request
    {
        Kind kind = Kind::MissingLinks;
        std::filesystem::path site;
        std::filesystem::path item; // of LinksFrom and LinksTo
        WebRules rules;
        std::shared_ptr<SiteLinks> links =
            {}; // what is kept of the site's links; without it every page is read
    };

    explicit LinkReportRun(QObject* parent) : QObject(parent) {}
    ~LinkReportRun() override { stop(); }

    void start(const Request& request);
    /// Drops what has not been taken.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_item != nullptr; }

    /// The pages found since the last call, in the order of their paths.
    std::vector<WebPage> take();

signals:
    /// The report is complete, or failed with `error`; the last pages can be taken now.
    void ended(const QString& error);

private:
    struct Findings;

    WorkItemPointer m_item;
    std::shared_ptr<Findings> m_findings;
};

} // namespace luma
