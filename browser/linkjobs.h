// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/paneljobs.h"

#include <filesystem>

namespace luma {

struct ReportChoices;

/// The reports of a pane on the links of its site, as lines of a log. Main thread only.
class LinkJobs final : public PanelJobs
{
    Q_OBJECT

public:
    enum class Direction { From, To };

    /// While the window closes, `reporter` may be destroyed first.
    LinkJobs(ProgressReporter& reporter, QObject* parent) : PanelJobs(Kind::Report, reporter, parent) {}

    /// Lists the links from or to an item.
    void showLinks(const std::filesystem::path& site, const std::filesystem::path& item, Direction direction,
                   const ReportChoices& choices);
    /// Lists all links of all pages and marks the missing ones.
    void findMissingLinks(const std::filesystem::path& site, const ReportChoices& choices);
};

} // namespace luma
