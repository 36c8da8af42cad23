// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/name.h"
#include "html/parentnode.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

/// An attribute: the name with its prefix ("xlink:href"), the value with character references resolved. UTF-8.
struct Attribute
{
    Name name;
    std::string value;

    bool operator==(const Attribute&) const = default;
};

enum class NameSpace : std::uint8_t { Html, Svg, MathMl };

/// An element. Names are in lower case, except the mixed-case ones of SVG and MathML ("foreignObject",
/// "viewBox"), which the parser corrects. Attributes keep their order.
class Element final : public ParentNode
{
public:
    explicit Element(Name tagName, NameSpace nameSpace = NameSpace::Html,
                     std::vector<Attribute> attributes = {});

    const std::string& tagName() const { return m_tagName.text(); }
    NameSpace nameSpace() const { return m_nameSpace; }
    /// Whether this is the HTML element of that name.
    bool is(std::string_view htmlTagName) const;

    const std::vector<Attribute>& attributes() const { return m_attributes; }
    /// Swaps all attributes with the given ones. An undo command needs no more: a second call restores the
    /// first state.
    void swapAttributes(std::vector<Attribute>& attributes) { m_attributes.swap(attributes); }
    /// The value; empty if there is no such attribute.
    std::string_view attr(std::string_view name) const;
    bool hasAttr(std::string_view name) const;
    /// Changes the value, or appends the attribute. The name must be valid in a tag: no white space, "/", ">"
    /// or "=".
    void setAttr(std::string_view name, std::string_view value);
    void removeAttr(std::string_view name);

    /// The text of the direct text children, simplified(); empty for scripts and style sheets.
    std::string ownText() const;
    /// Replaces all child nodes with the parsed markup; in a script, a style sheet and other raw text
    /// elements, with the markup as text. On an error nothing changes.
    Result<void> setHtml(std::string_view markup);
    using ParentNode::html;

    /// A selector that selects this element and no other in a browser: "#id" if the element's id is unique,
    /// else a path from such an ancestor or from the root. Empty inside a `template`, where no selector
    /// reaches.
    std::string cssSelector() const;

    NodePtr shallowCopy() const;

private:
    Name m_tagName;
    std::vector<Attribute> m_attributes;
    NameSpace m_nameSpace;
};

} // namespace luma::html
