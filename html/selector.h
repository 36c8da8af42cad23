// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
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
        std::vector<std::string> classes;
        std::vector<AttributeTest> attributes;
        std::size_t position = 0;       // among the element children of the parent, from 1; 0: any
        std::size_t positionOfType = 0; // among those of its name
        bool isRoot = false;
    };
    /// Elements of which each is the parent of the next.
    using Chain = std::vector<Compound>;
    /// Chains of which each is somewhere above the next.
    using Chains = std::vector<Chain>;

    static bool parseChains(std::string_view& rest, Chains& chains);
    static bool parseCompound(std::string_view& rest, Compound& compound);
    static bool parsePart(std::string_view& rest, Compound& compound);
    static bool parsePseudoClass(std::string_view& rest, Compound& compound);
    static bool parseAttribute(std::string_view& rest, Compound& compound);
    static bool matches(const Element& element, const Compound& compound);
    static bool matches(const Element& element, const Chains& chains);
    static const Element* topOf(const Element& element, const Chain& chain);

    std::vector<Chains> m_alternatives; // empty matches nothing
};

} // namespace luma::html
