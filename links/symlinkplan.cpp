// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/symlinkplan.h"

#include "base/pathbelow.h"
#include "links/movedlinks.h"

#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

bool isSymlink(SiteTree::Type type)
{
    return type == SiteTree::Type::LinkToFile || type == SiteTree::Type::LinkToFolder ||
           type == SiteTree::Type::BrokenLink;
}

/// Plans one link after another. Absolute paths are real ones: without symbolic links in those of the sites' folders.
class SymlinkPlanner final
{
public:
    SymlinkPlanner(const MoveRequest& request, const MovedLinks& links)
        : m_request(request),
          m_places(links.places()),
          m_oldRoot(realPath(request.sourceRoot)),
          m_newRoot(realPath(request.site))
    {}

    /// The link at this subpath of the old root.
    void add(const std::string& subpath)
    {
        const std::optional<std::string> moved = m_places.movedPath(subpath);
        if (!moved && m_request.operation == MoveOperation::Copy)
            return;
        const std::string newSubpath = moved.value_or(subpath);
        const fs::path newLink = m_newRoot / newSubpath;
        const fs::path now = m_request.isRenamedAlready ? newLink : m_oldRoot / subpath;
        std::error_code error;
        const fs::path before = fs::read_symlink(now, error);
        if (error || before.empty())
            return;
        const fs::path target = (m_oldRoot / subpath).parent_path() / before;
        const auto after = changed(before, target.lexically_normal(), now, newLink.parent_path());
        if (after && *after != before)
            note(newSubpath, subpath, before.native(), after->native());
    }

    [[nodiscard]] std::vector<SymlinkChange> take() { return std::move(m_changes); }

private:
    void note(const std::string& newSubpath, const std::string& subpath, const std::string& before,
              const std::string& after)
    {
        const fs::path link = m_request.site / newSubpath;
        const bool isCopied = m_request.operation == MoveOperation::Copy;
        m_changes.push_back({link, isCopied ? link : m_request.sourceRoot / subpath, before, after});
    }

    static fs::path realPath(const fs::path& folder)
    {
        std::error_code error;
        const fs::path real = fs::canonical(folder, error);
        return error ? folder : real;
    }

    // Where what was at `path` is after the move.
    [[nodiscard]] fs::path newPlaceOf(const fs::path& path) const
    {
        const auto below = pathBelow(path.native(), m_oldRoot.native());
        if (!below)
            return path;
        const auto moved = m_places.movedPath(*below);
        if (m_oldRoot != m_newRoot || moved)
            return m_newRoot / moved.value_or(std::string(*below));
        return path;
    }

    // The new text of a link that led to `target` and is in `newFolder` after the move; nothing for one that doesn't work.
    [[nodiscard]] std::optional<fs::path> changed(const fs::path& before, const fs::path& target,
                                                  const fs::path& now, const fs::path& newFolder) const
    {
        const fs::path newTarget = withoutEndSlash(newPlaceOf(target));
        std::error_code error;
        const bool works =
            m_request.isRenamedAlready ? fs::exists(newTarget, error) : fs::equivalent(target, now, error);
        if (!works || error)
            return std::nullopt;
        if (before.is_absolute())
            return changedAbsolute(before);
        // The way up from a folder that is reached by way of a symbolic link begins where that leads.
        const fs::path folder = fs::weakly_canonical(newFolder, error);
        const fs::path parent = fs::weakly_canonical(newTarget.parent_path(), error);
        if (error)
            return std::nullopt;
        const fs::path place = parent / newTarget.filename();
        if (withoutEndSlash(folder / before) == place)
            return before;
        const fs::path after = place.lexically_relative(folder);
        return before.has_filename() ? after : after / "";
    }

    // It may be spelled by way of a symbolic link to the site.
    [[nodiscard]] fs::path changedAbsolute(const fs::path& before) const
    {
        for (const fs::path& root : {m_request.sourceRoot, m_oldRoot}) {
            const auto below = pathBelow(before.native(), root.native());
            const auto moved = below && m_oldRoot == m_newRoot ? m_places.movedPath(*below) : std::nullopt;
            if (moved)
                return root / *moved;
        }
        return before;
    }

    static fs::path withoutEndSlash(const fs::path& path)
    {
        const fs::path normal = path.lexically_normal();
        return normal.has_filename() ? normal : normal.parent_path();
    }

    const MoveRequest& m_request;
    const MovedPlaces& m_places;
    const fs::path m_oldRoot;
    const fs::path m_newRoot;
    std::vector<SymlinkChange> m_changes;
};

// The links at and below an item of another root.
void addItem(SymlinkPlanner& planner, const fs::path& item, const std::string& subpath)
{
    std::error_code error;
    if (fs::is_symlink(item, error))
        planner.add(subpath);
    if (!fs::is_directory(fs::symlink_status(item, error)))
        return;
    const auto tree = SiteTree::read(item);
    for (SiteTree::Id id = 1; tree && id < tree->size(); ++id) {
        if (isSymlink(tree->type(id)))
            planner.add(subpath + "/" + tree->subpath(id));
    }
}

} // namespace

std::vector<SymlinkChange> planSymlinks(const MoveRequest& request, const MovedLinks& links)
{
    if (request.changesLinksOnly)
        return {};
    SymlinkPlanner planner(request, links);
    if (const SiteTree* const tree = links.tree()) {
        for (SiteTree::Id id = 1; id < tree->size(); ++id) {
            if (isSymlink(tree->type(id)))
                planner.add(tree->subpath(id));
        }
        return planner.take();
    }
    for (std::size_t i = 0; i < links.items().size(); ++i)
        addItem(planner, links.movedItems()[i].from, links.items()[i].from);
    return planner.take();
}

} // namespace luma
