// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "links/namesearch.h"
#include "links/sitetree.h"
#include "links/weblink.h"

#include <functional>
#include <optional>

namespace luma {

/// Tells of one file after another whether it refers to a target: a page or style sheet by links, a script, data or text by
/// the target's name. Each thread has its own. Tree and name must outlive it.
class TargetReader final
{
public:
    using Id = SiteTree::Id;
    using LinksOf = std::function<WebPage(Id page)>; // all links of a page or style sheet

    TargetReader(const SiteTree& tree, Id target, const NameSearch& name, LinksOf linksOf)
        : m_tree(&tree), m_target(target), m_name(&name), m_linksOf(std::move(linksOf))
    {}

    /// The links to the target, none for a text; nothing where the file does not refer to it.
    std::optional<WebPage> read(Id file);

private:
    const SiteTree* m_tree;
    Id m_target;
    const NameSearch* m_name;
    LinksOf m_linksOf;
    FileReader m_reader;
};

} // namespace luma
