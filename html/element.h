// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/parentnode.h"

#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

/// An attribute as it is written: the name with its prefix ("xlink:href"), the value with character
/// references resolved. UTF-8.
struct Attribute
{
    std::string name;
    std::string value;

    bool operator==(const Attribute&) const = default;
};

enum class NameSpace { Html, Svg, MathMl };

/// An element. Names are in lower case, but for the mixed-case ones of SVG and MathML ("foreignObject",
/// "viewBox"), which the parser sets right. Attributes keep their order.
class Element final : public ParentNode
{
public:
    explicit Element(std::string tagName, NameSpace nameSpace = NameSpace::Html,
                     std::vector<Attribute> attributes = {});

    const std::string& tagName() const { return m_tagName; }
    NameSpace nameSpace() const { return m_nameSpace; }
    /// Whether this is the HTML element of that name.
    bool is(std::string_view htmlTagName) const;

    const std::vector<Attribute>& attributes() const { return m_attributes; }
    /// Exchanges all attributes: the whole of an undo command that changes some, since doing it twice
    /// restores what was.
    void swapAttributes(std::vector<Attribute>& attributes) { m_attributes.swap(attributes); }
    /// The value; empty when the attribute is not there.
    std::string_view attr(std::string_view name) const;
    bool hasAttr(std::string_view name) const;
    /// Changes the value, or adds the attribute behind the others. The name must be one that can be written
    /// in a tag: no white space, "/", ">" or "=".
    void setAttr(std::string_view name, std::string_view value);
    void removeAttr(std::string_view name);

    /// The text of the direct text children, white space trimmed and simplified. Scripts and style sheets
    /// are no text: theirs is empty.
    std::string ownText() const;
    /// Replaces all child nodes by what the markup gives inside this element. In a script, a style sheet
    /// and their like the markup is the text as it stands. On an error nothing changes.
    Result<void> setHtml(std::string_view markup);
    using ParentNode::html;

    /// A selector that in a browser showing this page selects this element and no other: "#id" where the
    /// element's id is unique, else a path of steps from such an ancestor or from the root. Empty for what
    /// no selector reaches, the contents of a `template`.
    std::string cssSelector() const;

    NodePtr shallowCopy() const override;

private:
    std::string m_tagName;
    std::vector<Attribute> m_attributes;
    NameSpace m_nameSpace;
};

} // namespace luma::html
