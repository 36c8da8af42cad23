// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

class Element;

/// A parsed selector; ParentNode::select() says what it may contain.
class Selector final
{
public:
    /// Unknown syntax makes a selector that matches nothing.
    explicit Selector(std::string_view text);

    bool matches(const Element& element) const;

private:
    struct AttributeTest
    {
        enum class Kind { Present, Equal, Prefix };
        std::string name;
        Kind kind = Kind::Present;
        std::string value;
    };
    /// What one element must match: "link[rel=stylesheet]".
    struct Compound
    {
        std::string tagName;
        std::string id;
        std::vector<AttributeTest> attributes;
    };

    static bool parseCompound(std::string_view& rest, Compound& compound);
    static bool parseAttribute(std::string_view& rest, Compound& compound);
    static bool matches(const Element& element, const Compound& compound);

    // Ancestors first, the element itself last; empty matches nothing.
    std::vector<Compound> m_compounds;
};

} // namespace luma::html
