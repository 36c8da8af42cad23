// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "links/linkplan.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Collects the changes of files whose text changes, and which stay where they are.
class TextPlan final
{
public:
    explicit TextPlan(const std::filesystem::path& site);

    /// The change of a file that holds `bytes`. Error: it can't be written. Any thread.
    static Result<PageRewrite> rewriteOf(const std::filesystem::path& file, std::string_view bytes,
                                         std::vector<LinkEdit> edits);
    /// Adds a change in which `places` change, if any does; a file that can't be changed is named as one that stays.
    void add(const std::filesystem::path& file, Result<PageRewrite>&& page, std::size_t places);
    void addNote(PlanNote note) { m_plan.notes.push_back(std::move(note)); }

    /// The plan; `change` with all but the number of places.
    LinkPlan finished(TextChange change) &&;

private:
    LinkPlan m_plan;
    std::size_t m_places = 0;
};

/// The subpath of a file that may be spelled by way of symbolic links; nothing outside `root`. Any thread.
std::optional<std::string> placeInRoot(const std::filesystem::path& file, const std::filesystem::path& root);

/// `source`, the text (UTF-8) of a page that is open with unsaved edits, with the edits that `editsOf` finds for it. Any thread.
Result<std::string>
editedSource(std::string_view source,
             const std::function<Result<std::vector<LinkEdit>>(std::string_view bytes)>& editsOf);

} // namespace luma
