// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/parse.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/doctype.h"
#include "html/element.h"
#include "html/parsearena.h"
#include "html/strangecharacters.h"
#include "html/tagtraits.h"

#include <gumbo.h>

#include <algorithm>
#include <optional>

namespace luma::html {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

const void* parentOf(const void* node)
{
    return static_cast<const GumboNode*>(node)->parent;
}

/// Runs the parser in the arena; null if the arena stopped it.
const GumboOutput* run(ParseArena& arena, const GumboOptions& options, std::string_view source)
{
    // No object with a destructor may live between here and the jump.
    if (setjmp(arena.escape) != 0) // NOLINT(cert-err52-cpp): the parser is C and can't be left otherwise
        return nullptr;
    return gumbo_parse_with_options(&options, source.data(), source.size());
}

std::string_view view(const GumboStringPiece& piece)
{
    return {piece.data, piece.length};
}

NameSpace nameSpaceOf(const GumboElement& element)
{
    switch (element.tag_namespace) {
    case GUMBO_NAMESPACE_SVG:
        return NameSpace::Svg;
    case GUMBO_NAMESPACE_MATHML:
        return NameSpace::MathMl;
    case GUMBO_NAMESPACE_HTML:
        break;
    }
    return NameSpace::Html;
}

const GumboVector* childrenOf(const GumboNode& node)
{
    switch (node.type) {
    case GUMBO_NODE_DOCUMENT:
        return &node.v.document.children;
    case GUMBO_NODE_ELEMENT:
    case GUMBO_NODE_TEMPLATE:
        return &node.v.element.children;
    default:
        return nullptr;
    }
}

/// Builds our tree from the parser's.
class TreeBuilder final
{
public:
    /// `source` is what the parser read.
    TreeBuilder(const StrangeCharacters& source, std::size_t depthLimit)
        : m_source(source), m_depthLimit(depthLimit)
    {}

    /// Builds the nodes `from` and their subtrees into `to`. False if they are deeper than the limit.
    bool build(const GumboVector& from, ParentNode& to) const
    {
        struct Level
        {
            const GumboVector* nodes;
            unsigned next;
            ParentNode* parent;
        };
        std::vector<Level> levels = {{&from, 0, &to}};
        while (!levels.empty()) {
            Level& level = levels.back();
            if (level.next == level.nodes->length) {
                levels.pop_back();
                continue;
            }
            const auto& node = *static_cast<const GumboNode*>(level.nodes->data[level.next++]);
            Node& made = append(*level.parent, node);
            if (const GumboVector* children = childrenOf(node); children && children->length > 0) {
                if (levels.size() > m_depthLimit)
                    return false;
                levels.push_back({children, 0, made.asParent()});
            }
        }
        return true;
    }

    /// Inserts the doctype among the document's comments. The parser does not say where it was, but only
    /// comments and white space can precede it, so it is the first tag that is not a comment.
    void placeDoctype(const GumboDocument& parsed, Document& document) const
    {
        if (!parsed.has_doctype)
            return;
        const std::string_view source = m_source.disguised();
        std::size_t at = source.find('<');
        Node* next = document.firstChild();
        for (unsigned i = 0; next && i < parsed.children.length; ++i, next = next->next()) {
            const auto& node = *static_cast<const GumboNode*>(parsed.children.data[i]);
            const std::string_view comment = view(node.v.text.original_text);
            if (node.type != GUMBO_NODE_COMMENT || comment.data() != source.data() + at)
                break;
            at = source.find('<', at + comment.size());
        }
        // The standard's tokenizer ends a doctype at the first ">", even in quotes.
        const std::size_t end = source.find('>', at);
        std::string declaration =
            "<!DOCTYPE" + std::string(*parsed.name ? " " : "") + m_source.restored(parsed.name) + ">";
        if (end != std::string_view::npos && startsWithIgnoringAsciiCase(source.substr(at), "<!doctype"))
            declaration = m_source.restored(source.substr(at, end + 1 - at));
        document.insert(std::make_unique<Doctype>(m_source.restored(parsed.name),
                                                  m_source.restored(parsed.public_identifier),
                                                  m_source.restored(parsed.system_identifier), declaration),
                        next);
    }

private:
    /// Appends our node for the parser's. Adjacent texts, CDATA sections included, become one node.
    Node& append(ParentNode& parent, const GumboNode& node) const
    {
        if (node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE)
            return parent.append(makeElement(node.v.element));
        const std::string text = m_source.restored(node.v.text.text);
        if (node.type == GUMBO_NODE_COMMENT)
            return parent.append(CharacterData::comment(text));
        Node* const last = parent.lastChild();
        if (!last || last->kind() != Node::Kind::Text)
            return parent.append(CharacterData::text(text));
        static_cast<CharacterData*>(last)->append(text);
        return *last;
    }

    NodePtr makeElement(const GumboElement& element) const
    {
        std::vector<Attribute> attributes;
        attributes.reserve(element.attributes.length);
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            const auto& attribute = *static_cast<const GumboAttribute*>(element.attributes.data[i]);
            attributes.push_back({nameOf(attribute), m_source.restored(attribute.value)});
        }
        return std::make_unique<Element>(nameOf(element), nameSpaceOf(element), std::move(attributes));
    }

    std::string nameOf(const GumboElement& element) const
    {
        std::string name = element.tag == GUMBO_TAG_UNKNOWN
                               ? unknownName(element)
                               : std::string(gumbo_normalized_tagname(element.tag));
        if (element.tag_namespace == GUMBO_NAMESPACE_SVG) {
            const GumboStringPiece piece = {name.data(), name.size()};
            if (const char* adjusted = gumbo_normalize_svg_tagname(&piece))
                return adjusted;
        }
        return name;
    }

    /// The name of an element unknown to the parser, as the standard's tokenizer reads it.
    std::string unknownName(const GumboElement& element) const
    {
        std::string_view tag = view(element.original_tag);
        tag.remove_prefix(std::min<std::size_t>(tag.size(), tag.starts_with("</") ? 2 : 1));
        std::string name = asciiLower(m_source.restored(tag.substr(0, tag.find_first_of(" \t\n\f\r/>"))));
        for (std::size_t at = name.find('\0'); at != std::string::npos; at = name.find('\0', at))
            name.replace(at, 1, "\xEF\xBF\xBD");
        return name;
    }

    std::string nameOf(const GumboAttribute& attribute) const
    {
        std::string name = m_source.restored(attribute.name);
        switch (attribute.attr_namespace) {
        case GUMBO_ATTR_NAMESPACE_XLINK:
            return "xlink:" + name;
        case GUMBO_ATTR_NAMESPACE_XML:
            return "xml:" + name;
        case GUMBO_ATTR_NAMESPACE_XMLNS:
            return name == "xmlns" ? name : "xmlns:" + name;
        case GUMBO_ATTR_NAMESPACE_NONE:
            break;
        }
        return name;
    }

    const StrangeCharacters& m_source;
    std::size_t m_depthLimit;
};

Error refusal(ParseArena::Excess excess)
{
    switch (excess) {
    case ParseArena::Excess::Memory:
        return {"Its unclosed tags multiply its elements without limit."};
    case ParseArena::Excess::Attributes:
        return {"One of its tags has too many attributes."};
    default:
        return {"Its elements are nested too deeply."};
    }
}

std::optional<Error> refusal(std::string_view source, const ParseLimits& limits)
{
    if (source.size() > limits.bytes)
        return Error{"It is larger than " + std::to_string(limits.bytes >> 20U) + " MB."};
    if (!isValidUtf8(source))
        return Error{"It is not UTF-8."};
    return {};
}

/// One run of the parser, with its arena.
class Parser final
{
public:
    Parser(std::string_view source, const ParseLimits& limits)
        : m_source(source),
          m_builder(m_source, limits.depth),
          // An ordinary page needs about 30 times its size.
          m_arena({sizeof(GumboNode), sizeof(GumboAttribute)}, parentOf, limits.depth,
                  (std::size_t{64} << 20U) + 64 * source.size())
    {
        m_options.max_errors = 0;
        m_options.userdata = &m_arena;
        m_options.allocator = [](void* arena, std::size_t size) {
            return static_cast<ParseArena*>(arena)->allocate(size);
        };
        m_options.deallocator = [](void*, void*) {};
    }

    void setContext(const Element& context)
    {
        m_options.fragment_context = gumbo_tag_enum(context.tagName().c_str());
        m_options.fragment_namespace = context.nameSpace() == NameSpace::Svg      ? GUMBO_NAMESPACE_SVG
                                       : context.nameSpace() == NameSpace::MathMl ? GUMBO_NAMESPACE_MATHML
                                                                                  : GUMBO_NAMESPACE_HTML;
    }

    /// The parser's tree, valid as long as this object; null if the page was refused.
    const GumboOutput* run() { return html::run(m_arena, m_options, m_source.disguised()); }
    const TreeBuilder& builder() const { return m_builder; }
    Error error() const { return refusal(m_arena.excess()); }

private:
    StrangeCharacters m_source;
    TreeBuilder m_builder;
    ParseArena m_arena;
    GumboOptions m_options = kGumboDefaultOptions;
};

} // namespace

Result<std::unique_ptr<Document>> parse(std::string_view page, const ParseLimits& limits)
{
    if (auto error = refusal(page, limits))
        return *error;
    const bool hasMark = page.starts_with(byteOrderMark);
    if (hasMark)
        page.remove_prefix(byteOrderMark.size());
    Parser parser(page, limits);
    const GumboOutput* const output = parser.run();
    auto document = std::make_unique<Document>();
    if (!output || !parser.builder().build(output->document->v.document.children, *document))
        return parser.error();
    parser.builder().placeDoctype(output->document->v.document, *document);
    document->setByteOrderMark(hasMark);
    return document;
}

Result<NodeList> parseFragment(std::string_view markup, const Element& context, const ParseLimits& limits)
{
    if (auto error = refusal(markup, limits))
        return *error;
    NodeList nodes;
    if (hasRawText(context)) {
        if (!markup.empty())
            nodes.push_back(CharacterData::text(markup));
        return nodes;
    }
    Parser parser(markup, limits);
    parser.setContext(context);
    const GumboOutput* const output = parser.run();
    Element holder("holder");
    if (!output || !parser.builder().build(output->root->v.element.children, holder))
        return parser.error();
    holder.swapChildren(nodes);
    return nodes;
}

} // namespace luma::html
