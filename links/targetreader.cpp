// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/targetreader.h"

#include "links/mentionednames.h"
#include "links/webrules.h"

#include <algorithm>

namespace luma {

std::optional<WebPage> TargetReader::read(Id file)
{
    const std::string_view name = m_tree->name(file);
    if (webFileKind(name) != WebFileKind::Other) {
        WebPage page = m_linksOf(file);
        std::erase_if(page.links, [this](const WebLink& link) {
            return link.file != m_target && link.folder != m_target;
        });
        if (!page.links.empty())
            return page;
        const std::vector<std::uint64_t> mentioned = m_mentionedBy(file);
        if (std::binary_search(mentioned.begin(), mentioned.end(), mentionedName(m_tree->name(m_target))))
            return WebPage{m_tree->subpath(file), {}, {}};
    }
    if (!mentionsFiles(name) || file == m_target)
        return std::nullopt;
    const auto text = m_reader.read(m_tree->path(file));
    if (!text || !m_name->holdsAny(*text))
        return std::nullopt;
    return WebPage{m_tree->subpath(file), {}, {}};
}

} // namespace luma
