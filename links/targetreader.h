// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "links/namesearch.h"
#include "links/sitetree.h"
#include "links/weblink.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace luma {

/// Tells of one file after another whether it refers to a target: a page or style sheet by links, or by the target's name in
/// its scripts, another script, data or text by that name. Each thread has its own. Tree and name must outlive it.
class TargetReader final
{
public:
    using Id = SiteTree::Id;
    using LinksOf = std::function<WebPage(Id page)>; // all links of a page or style sheet
    /// The names that the page mentions of which the links were asked for last, as mentionedNames() gives them.
    using MentionedBy = std::function<std::vector<std::uint64_t>(Id page)>;

    TargetReader(const SiteTree& tree, Id target, const NameSearch& name, LinksOf linksOf,
                 MentionedBy mentionedBy)
        : m_tree(&tree),
          m_target(target),
          m_name(&name),
          m_linksOf(std::move(linksOf)),
          m_mentionedBy(std::move(mentionedBy))
    {}

    /// The links to the target, none for a text; nothing where the file does not refer to it.
    std::optional<WebPage> read(Id file);

private:
    const SiteTree* m_tree;
    Id m_target;
    const NameSearch* m_name;
    LinksOf m_linksOf;
    MentionedBy m_mentionedBy;
    FileReader m_reader;
};

} // namespace luma
