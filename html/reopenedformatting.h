// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <unordered_set>

namespace luma::html {

class Document;
class Element;
class Node;

/// The tags that an edited page needs because the parser opens formatting again: in <h1><a>b</h1><p>c</p> the second a is
/// made of the first one's tag, so an edit of one would be one of the other, too. Valid until the tree changes. Any
/// thread.
class ReopenedFormatting final
{
public:
    /// None.
    ReopenedFormatting() = default;
    /// The document has a source.
    explicit ReopenedFormatting(const Document& document);

    [[nodiscard]] bool wantsStartTag(const Element& element) const;
    [[nodiscard]] bool wantsEndTag(const Element& element) const;
    /// All that want either.
    [[nodiscard]] const std::unordered_set<const Node*>& edited() const { return m_edited; }

private:
    void end(const Element& element);
    void start(const Element& element);

    std::unordered_set<const Element*> m_started;
    std::unordered_set<const Element*> m_ended;
    std::unordered_set<const Node*> m_edited;
};

} // namespace luma::html
