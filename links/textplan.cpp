// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/textplan.h"

#include "base/files.h"
#include "base/pathbelow.h"
#include "base/utf8.h"
#include "links/hardlinkplan.h"
#include "links/movedlinks.h"

#include <sys/stat.h>

#include <utility>

namespace luma {

namespace fs = std::filesystem;

TextPlan::TextPlan(const fs::path& site)
{
    m_plan.request.site = withoutEndSlashes(site);
    m_plan.request.sourceRoot = m_plan.request.site;
    m_plan.links = MovedLinks::ofSite(m_plan.request, nullptr);
}

Result<PageRewrite> TextPlan::rewriteOf(const fs::path& file, std::string_view bytes,
                                        std::vector<LinkEdit> edits)
{
    if (!edits.empty()) {
        if (const auto writable = checkReplaceable(realFile(file)); !writable)
            return writable.error();
    }
    PageRewrite page{file, file, {}, hashOfFile(bytes), hashOfFile(withEdits(bytes, edits))};
    page.edits = std::move(edits);
    struct stat status = {};
    if (::stat(file.c_str(), &status) == 0)
        page.modified = status.st_mtim;
    return page;
}

void TextPlan::add(const fs::path& file, Result<PageRewrite>&& page, std::size_t places)
{
    if (!page) {
        m_plan.problems.push_back({MoveProblem::Kind::NotRewritten, file, page.error().text});
    } else if (page->newHash != page->oldHash) {
        m_places += places;
        m_plan.pages.push_back(*std::move(page));
    }
}

LinkPlan TextPlan::finished(TextChange change) &&
{
    change.places = m_places;
    m_plan.text = std::move(change);
    planHardLinks(m_plan);
    return std::move(m_plan);
}

std::optional<std::string> placeInRoot(const fs::path& file, const fs::path& root)
{
    if (const auto below = pathBelow(file.native(), root.native()))
        return std::string(*below);
    std::error_code error;
    const fs::path realRoot = fs::canonical(root, error);
    const fs::path folder = error ? fs::path() : fs::weakly_canonical(file.parent_path(), error);
    const fs::path realFile = folder / file.filename();
    const auto below = error ? std::nullopt : pathBelow(realFile.native(), realRoot.native());
    return below ? std::optional(std::string(*below)) : std::nullopt;
}

Result<std::string>
editedSource(std::string_view source,
             const std::function<Result<std::vector<LinkEdit>>(std::string_view bytes)>& editsOf)
{
    // Whatever encoding the page declares, this text is UTF-8.
    const std::string bytes = std::string(utf8ByteOrderMark).append(source);
    const auto edits = editsOf(bytes);
    if (!edits)
        return edits.error();
    return withEdits(bytes, *edits).substr(utf8ByteOrderMark.size());
}

} // namespace luma
