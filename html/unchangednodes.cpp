// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/unchangednodes.h"

#include "html/characterdata.h"
#include "html/document.h"
#include "html/pagesource.h"

#include <vector>

namespace luma::html {

namespace {

bool isEmptyText(const Node& node)
{
    const std::string* const text = textOf(node);
    return text && text->empty();
}

} // namespace

// Bottom up, so that an element knows of its children.
UnchangedNodes::UnchangedNodes(const Document& document)
{
    std::vector<const Node*> nodes;
    for (const Node* node = &document; node; node = node->following(document))
        nodes.push_back(node);
    for (std::size_t i = nodes.size(); i-- > 0;) {
        const Node& node = *nodes[i];
        if (node.origin().source && hasSameContent(node) && hasSameChildren(node) && areUnchanged(node))
            m_nodes.insert(&node);
    }
}

bool UnchangedNodes::hasSameContent(const Node& node)
{
    return PageSource::recordOf(node).hasContent(PageSource::contentHash(node));
}

bool UnchangedNodes::hasSameChildren(const Node& node)
{
    const ParentNode* const parent = node.asParent();
    if (!parent)
        return true;
    const SourceRecord& record = PageSource::recordOf(node);
    const PageSource& source = *node.origin().source;
    std::uint32_t expected = node.origin().record + 1;
    for (const Node* child = parent->firstChild(); child; child = child->next()) {
        if (isEmptyText(*child))
            continue;
        if (expected >= record.after || child->origin().source != &source ||
            child->origin().record != expected)
            return false;
        expected = source.record(expected).after;
    }
    return expected == record.after;
}

bool UnchangedNodes::areUnchanged(const Node& parent) const
{
    const ParentNode* const node = parent.asParent();
    const Node* child = node ? node->firstChild() : nullptr;
    while (child && (isEmptyText(*child) || m_nodes.contains(child)))
        child = child->next();
    return !child;
}

} // namespace luma::html
