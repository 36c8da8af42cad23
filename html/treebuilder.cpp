// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/treebuilder.h"

#include "base/ascii.h"
#include "base/usertext.h"
#include "html/characterdata.h"
#include "html/characterreferences.h"
#include "html/codemarks.h"
#include "html/doctype.h"
#include "html/element.h"
#include "html/htmlscanner.h"
#include "html/maskedsource.h"
#include "html/parsearena.h"
#include "html/parsernames.h"
#include "html/strangecharacters.h"
#include "html/tagtraits.h"

#include <gumbo.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

namespace luma::html {

namespace {

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
    /// The parser read the text of `names`, which it has from `source`: `page` (null: one without server code) behind `prefix`.
    TreeBuilder(const StrangeCharacters& source, const ParserNames& names, const MaskedSource* page,
                std::size_t prefix, std::size_t depthLimit)
        : m_source(source),
          m_names(names),
          m_page(page && page->holdsCode() ? page : nullptr),
          m_prefix(prefix),
          m_depthLimit(depthLimit)
    {}

    /// Where the nodes made stand in the source, by the record numbers of their origins.
    std::vector<SourceMarks> takeMarks() { return std::move(m_marks); }

    /// The markup of one of the parser's nodes, or of what may be none; empty if it is none or has none in the source.
    [[nodiscard]] std::string_view originalOf(const GumboNode& node) const
    {
        unsigned type = 0;
        std::memcpy(&type, &node.type, sizeof(node.type));
        if (type == GUMBO_NODE_DOCUMENT || type > GUMBO_NODE_TEMPLATE)
            return {};
        const std::string_view original =
            view(childrenOf(node) ? node.v.element.original_tag : node.v.text.original_text);
        const std::string_view source = m_names.text();
        const std::less<> isBefore;
        if (isBefore(original.data(), source.data() + m_prefix) ||
            !isBefore(original.data(), source.data() + source.size()) ||
            original.size() > source.size() - offsetIn(source, original))
            return {};
        return original;
    }

    /// Where a part of the parser's source stands in the page, in bytes.
    [[nodiscard]] std::size_t placeOf(std::string_view part) const { return rangeOf(part).begin; }

    /// Where the tag stands that has too many attributes, or those from this markup on to it.
    [[nodiscard]] std::size_t placeOfAttributes(std::string_view from) const
    {
        const std::string_view source = m_names.text();
        HtmlScanner scanner(from.empty() ? source : source.substr(offsetIn(source, from)));
        HtmlToken token;
        std::size_t count = 0;
        while (count <= ParseArena::attributesLimit && scanner.next(token))
            count += token.attributes.size();
        return count > ParseArena::attributesLimit ? placeOf(token.name) - 1 : placeOf(from);
    }

    /// Whether the tree is not a browser's because of the names in it, or shows one that ParserNames gave.
    [[nodiscard]] bool isMisread() const { return m_isMisread || lacksIsindex(); }

    /// The node that was deeper than the limit; null if none was.
    [[nodiscard]] const GumboNode* tooDeep() const { return m_tooDeep; }

    /// Builds all below `from` into `to`. False when that is deeper than the limit.
    bool build(const GumboVector& from, ParentNode& to)
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
                if (levels.size() > m_depthLimit) {
                    m_tooDeep = &node;
                    return false;
                }
                levels.push_back({children, 0, made.asParent()});
            }
        }
        return true;
    }

    /// Server code that stands before a page without tags for html, head and body is a part of what the page shows, and
    /// so are the comments beside it.
    void moveLeadingCode(Document& document) const
    {
        Element* const root = document.documentElement();
        Element* const body = document.body();
        const auto isImplied = [this](const Element* element) {
            return element && m_marks[element->origin().record].start.isEmpty();
        };
        if (!isImplied(root) || !isImplied(document.head()) || !isImplied(body) ||
            document.head()->firstChild())
            return;
        bool holdsCode = false;
        Node* first = root;
        for (Node* node = root->previous(); node && node->kind() == Node::Kind::Comment;
             node = node->previous()) {
            first = node;
            holdsCode = holdsCode || isServerCode(*node);
        }
        if (!holdsCode)
            return;
        Node* const next = body->firstChild();
        while (first != root) {
            Node& node = *std::exchange(first, first->next());
            const Origin origin = node.origin();
            const std::string code = codeOf(node);
            NodePtr moved = node.detach();
            if (!code.empty())
                moved = makeCodeNode(*body, code);
            moved->setOrigin(origin);
            body->insert(std::move(moved), next);
        }
    }

    /// Puts the doctype among the document's comments. The parser does not say where it stood, but only
    /// comments and white space can stand before it: it is the first tag that is no comment.
    void placeDoctype(const GumboDocument& parsed, Document& document)
    {
        if (!parsed.has_doctype)
            return;
        const std::string_view source = m_names.text();
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
        // The declaration itself holds no server code.
        std::string declaration =
            "<!DOCTYPE" + std::string(*parsed.name ? " " : "") + m_source.restored(parsed.name) + ">";
        if (end != std::string_view::npos && startsWithIgnoringAsciiCase(source.substr(at), "<!doctype"))
            declaration = m_source.restored(source.substr(at, end + 1 - at));
        Node& doctype = document.insert(std::make_unique<Doctype>(m_source.restored(parsed.name),
                                                                  m_source.restored(parsed.public_identifier),
                                                                  m_source.restored(parsed.system_identifier),
                                                                  declaration),
                                        next);
        if (end != std::string_view::npos)
            mark(doctype, {rangeOf(source.substr(at, end + 1 - at)), {}});
        else
            mark(doctype, {});
    }

private:
    /// Appends our node for the parser's. Text next to text becomes one node, CDATA sections included.
    Node& append(ParentNode& parent, const GumboNode& node)
    {
        if (node.type == GUMBO_NODE_ELEMENT || node.type == GUMBO_NODE_TEMPLATE) {
            Node& element = parent.append(makeElement(node.v.element));
            // What the parser made by itself carries the tag that it copied.
            constexpr unsigned copies = GUMBO_INSERTION_BY_PARSER | GUMBO_INSERTION_ADOPTION_AGENCY_CLONED |
                                        GUMBO_INSERTION_RECONSTRUCTED_FORMATTING_ELEMENT;
            m_isMisread = m_isMisread || isMisread(node);
            if (node.v.element.tag == GUMBO_TAG_FORM)
                m_formTag = view(node.v.element.original_tag);
            const bool isCopy = (node.parse_flags & copies) != 0;
            mark(element, {isCopy ? SourceRange() : rangeOf(view(node.v.element.original_tag)),
                           rangeOf(view(node.v.element.original_end_tag))});
            return element;
        }
        const std::string_view original = view(node.v.text.original_text);
        m_isMisread = m_isMisread || m_names.isShownIn(node.v.text.text);
        if (node.type == GUMBO_NODE_COMMENT) {
            Node& comment = parent.append(makeComment(parent, node));
            mark(comment, {rangeOf(original), {}});
            return comment;
        }
        std::string text = textOf(parent, node);
        const std::string_view rest = moveIntoForm(parent, text, original);
        if (Node* const form = parent.lastChild(); form && text.empty() && rest.size() < original.size())
            return *form;
        return appendText(parent, text, rest);
    }

    static std::string_view nameIn(std::string_view tag)
    {
        tag.remove_prefix(std::min<std::size_t>(tag.size(), tag.starts_with("</") ? 2 : 1));
        return tag.substr(0, tag.find_first_of(" \t\n\f\r/>"));
    }

    // In a form the parser leaves isindex out.
    [[nodiscard]] bool lacksIsindex() const
    {
        if (m_formTag.empty() || m_names.areExchanged())
            return false;
        const std::string_view text = m_names.text();
        for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
            if (startsWithIgnoringAsciiCase(text.substr(at + 1), "isindex"))
                return true;
        }
        return false;
    }

    // Another unknown element's end tag may have ended it.
    [[nodiscard]] bool isMisread(const GumboNode& node) const
    {
        const GumboElement& element = node.v.element;
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            if (m_names.isShownIn(static_cast<const GumboAttribute*>(element.attributes.data[i])->value))
                return true;
        }
        if (m_names.areExchanged())
            return false;
        if (element.tag == GUMBO_TAG_MENUITEM || (node.parse_flags & GUMBO_INSERTION_FROM_ISINDEX) != 0)
            return true;
        if (element.tag != GUMBO_TAG_UNKNOWN || element.tag_namespace != GUMBO_NAMESPACE_HTML)
            return false;
        if (ParserNames::isBlock(asciiLower(nameIn(view(element.original_tag)))))
            return true;
        const std::string_view end = view(element.original_end_tag);
        const std::string name(nameIn(end));
        return end.starts_with("</") && !equalIgnoringAsciiCase(name, nameIn(view(element.original_tag))) &&
               gumbo_tag_enum(name.c_str()) == GUMBO_TAG_UNKNOWN;
    }

    [[nodiscard]] bool holdsCode(const SourceRange& range) const
    {
        return m_page && m_page->holdsCode(range.begin, range.end);
    }

    [[nodiscard]] NodePtr makeComment(const ParentNode& parent, const GumboNode& node) const
    {
        const SourceRange range = rangeOf(view(node.v.text.original_text));
        if (!holdsCode(range))
            return CharacterData::comment(m_source.restored(node.v.text.text));
        if (const std::string code = m_page->codeAt(range.begin, range.end); !code.empty())
            return makeCodeNode(parent, code);
        const std::string_view comment = m_page->text().substr(range.begin, range.end - range.begin);
        HtmlScanner scanner(comment);
        HtmlToken token;
        scanner.next(token);
        const std::size_t begin = range.begin + offsetIn(comment, token.content);
        return CharacterData::comment(m_page->rawText(begin, begin + token.content.size()));
    }

    // In ordinary text code is a node; where the text's stretch holds any, it stands between its parts.
    [[nodiscard]] std::string textOf(const ParentNode& parent, const GumboNode& node) const
    {
        const Element* const element = parent.asElement();
        const SourceRange range = textRangeOf(view(node.v.text.original_text));
        if (element && holdsCode(range)) {
            if (hasRawText(*element))
                return m_page->rawText(range.begin, range.end);
            if (hasEscapableRawText(*element))
                return m_page->decoded(range.begin, range.end, ReferenceContext::Text);
        }
        return m_source.restored(node.v.text.text);
    }

    // A form in a form is none, but its end tag is the outer one's.
    [[nodiscard]] bool isFormClosedBefore(std::string_view part) const
    {
        if (m_formTag.empty() || !std::less<>()(m_formTag.data(), part.data()))
            return false;
        const std::size_t begin = offsetIn(m_names.text(), m_formTag);
        HtmlScanner scanner(m_names.text().substr(begin, offsetIn(m_names.text(), part) - begin));
        HtmlToken token;
        while (scanner.next(token)) {
            if (token.kind == HtmlTokenKind::EndTag && equalIgnoringAsciiCase(token.name, "form"))
                return true;
        }
        return false;
    }

    // The parser puts text that stands directly before </form> behind the form, in one with what follows the tag.
    std::string_view moveIntoForm(ParentNode& parent, std::string& text, std::string_view original)
    {
        Element* const form = parent.lastChild() ? parent.lastChild()->asElement() : nullptr;
        const std::size_t open = original.find("</");
        if (!form || !form->is("form") || open == std::string_view::npos)
            return original;
        HtmlScanner scanner(original);
        HtmlToken token;
        if (!scanner.next(token) || token.kind != HtmlTokenKind::EndTag ||
            !equalIgnoringAsciiCase(token.name, "form"))
            return original;
        const std::string inside = decodeCharacters(original.substr(0, token.begin), ReferenceContext::Text);
        if (!text.starts_with(inside) || isFormClosedBefore(original))
            return original;
        if (!inside.empty())
            appendText(*form, inside, original.substr(0, token.begin));
        m_marks[form->origin().record].end = rangeOf(original.substr(token.begin, token.end - token.begin));
        text.erase(0, inside.size());
        return original.substr(token.end);
    }

    Node& appendText(ParentNode& parent, const std::string& text, std::string_view original)
    {
        const SourceRange range = textRangeOf(original);
        Node* const last = parent.lastChild();
        if (!last || last->kind() != Node::Kind::Text) {
            Node& added = parent.append(CharacterData::text(text));
            mark(added, {range, {}});
            return added;
        }
        static_cast<CharacterData*>(last)->append(text);
        SourceRange& whole = m_marks[last->origin().record].start;
        if (!range.isEmpty() && !whole.isEmpty() && range.begin > whole.end)
            m_marks[last->origin().record].strayParts.push_back(range);
        whole = {std::min(whole.begin, range.begin), std::max(whole.end, range.end)};
        return *last;
    }

    void mark(Node& node, const SourceMarks& marks)
    {
        node.setOrigin({nullptr, static_cast<std::uint32_t>(m_marks.size())});
        m_marks.push_back(marks);
    }

    /// What the source has for a part of the text that the parser read; empty for what is no such part.
    std::string_view sourceOf(std::string_view part) const
    {
        const std::string_view text = m_names.text();
        if (part.empty() || part.data() < text.data() || part.data() > text.data() + text.size())
            return {};
        const std::size_t begin = m_names.pagePlace(offsetIn(text, part));
        return m_source.disguised().substr(begin,
                                           m_names.pagePlace(offsetIn(text, part) + part.size()) - begin);
    }

    SourceRange rangeOf(std::string_view part) const { return rangeInPage(sourceOf(part)); }

    SourceRange rangeInPage(std::string_view partOfSource) const
    {
        const std::size_t begin = partOfSource.empty() ? 0 : offsetIn(m_source.disguised(), partOfSource);
        if (partOfSource.empty() || begin < m_prefix)
            return {};
        return {static_cast<std::uint32_t>(m_source.sourcePlace(begin) - m_prefix),
                static_cast<std::uint32_t>(m_source.sourcePlace(begin + partOfSource.size()) - m_prefix)};
    }

    // The parser lets a text begin behind the carriage return of its first line end.
    SourceRange textRangeOf(std::string_view part) const
    {
        SourceRange range = rangeOf(part);
        const char* const begin = part.data();
        if (!range.isEmpty() && begin != m_names.text().data() && *begin == '\n' && *(begin - 1) == '\r')
            --range.begin;
        return range;
    }

    NodePtr makeElement(const GumboElement& element) const
    {
        std::vector<Attribute> attributes;
        attributes.reserve(element.attributes.length);
        bool areJoined = false;
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            const auto& attribute = *static_cast<const GumboAttribute*>(element.attributes.data[i]);
            attributes.push_back({nameOf(attribute), valueOf(attribute)});
            areJoined = areJoined || std::strlen(attribute.name) != attribute.original_name.length;
        }
        if (areJoined && element.tag_namespace == GUMBO_NAMESPACE_HTML)
            attributes = attributesIn(view(element.original_tag));
        return std::make_unique<Element>(nameOf(element), nameSpaceOf(element), std::move(attributes));
    }

    // The parser joins the name of a doubled attribute without a value and the next one's: <p class class id=a>.
    std::vector<Attribute> attributesIn(std::string_view tag) const
    {
        std::vector<Attribute> attributes;
        HtmlScanner scanner(tag);
        HtmlToken token;
        scanner.next(token);
        for (const HtmlAttribute& attribute : token.attributes) {
            const std::string name = readName(sourceOf(attribute.name));
            const bool isDouble =
                std::any_of(attributes.begin(), attributes.end(),
                            [&name](const Attribute& other) { return other.name == std::string_view(name); });
            const SourceRange range = rangeOf(attribute.value);
            if (!isDouble)
                attributes.push_back(
                    {name, holdsCode(range)
                               ? m_page->decoded(range.begin, range.end, ReferenceContext::AttributeValue)
                               : m_source.restored(
                                     decodeCharacters(attribute.value, ReferenceContext::AttributeValue))});
        }
        return attributes;
    }

    // The value of an attribute without one has the place of its name.
    std::string valueOf(const GumboAttribute& attribute) const
    {
        SourceRange range = rangeOf(view(attribute.original_value));
        if (*attribute.value == '\0' || !holdsCode(range))
            return m_source.restored(attribute.value);
        const std::string_view value = view(attribute.original_value);
        if (value.starts_with('"') || value.starts_with('\'')) {
            ++range.begin;
            --range.end;
        }
        return m_page->decoded(range.begin, range.end, ReferenceContext::AttributeValue);
    }

    std::string nameOf(const GumboElement& element) const
    {
        const std::string_view known = gumbo_normalized_tagname(element.tag);
        std::string name = element.tag == GUMBO_TAG_UNKNOWN || m_names.isGuise(known) ? unknownName(element)
                                                                                      : std::string(known);
        if (element.tag_namespace == GUMBO_NAMESPACE_SVG) {
            const GumboStringPiece piece = {name.data(), name.size()};
            if (const char* adjusted = gumbo_normalize_svg_tagname(&piece))
                return adjusted;
        }
        return name;
    }

    /// The name of an element unknown to the parser.
    std::string unknownName(const GumboElement& element) const
    {
        return readName(nameIn(sourceOf(view(element.original_tag))));
    }

    /// A name as the standard's tokenizer reads it.
    std::string readName(std::string_view partOfSource) const
    {
        if (const SourceRange range = rangeInPage(partOfSource); holdsCode(range))
            return m_page->name(range.begin, range.end);
        std::string name = asciiLower(m_source.restored(partOfSource));
        for (std::size_t at = name.find('\0'); at != std::string::npos; at = name.find('\0', at))
            name.replace(at, 1, "\xEF\xBF\xBD");
        return name;
    }

    std::string nameOf(const GumboAttribute& attribute) const
    {
        if (const SourceRange range = rangeOf(view(attribute.original_name)); holdsCode(range))
            return m_page->name(range.begin, range.end);
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
    const ParserNames& m_names;
    const MaskedSource* m_page;
    std::size_t m_prefix;
    std::size_t m_depthLimit;
    std::vector<SourceMarks> m_marks;
    bool m_isMisread = false;
    std::string_view m_formTag; // of the last form, in the parser's text
    const GumboNode* m_tooDeep = nullptr;
};

Error refusal(ParseArena::Excess excess)
{
    switch (excess) {
    case ParseArena::Excess::Memory:
        return {userText(
            QT_TRANSLATE_NOOP("luma::Engines", "Its unclosed tags multiply its elements without limit."))};
    case ParseArena::Excess::Attributes:
        return {userText(QT_TRANSLATE_NOOP("luma::Engines", "One of its tags has too many attributes."))};
    default:
        return {userText(QT_TRANSLATE_NOOP("luma::Engines", "Its elements are nested too deeply."))};
    }
}

/// One run of the parser, with its arena.
class Parser final
{
public:
    Parser(const ParserInput& input, const ParseLimits& limits, ParserNames::Way names)
        : m_source(input.text),
          m_names(m_source.disguised(), names),
          m_builder(m_source, m_names, input.page, input.prefix, limits.depth),
          // An ordinary page needs about 30 times its size.
          m_arena({sizeof(GumboNode), sizeof(GumboAttribute)}, parentOf, limits.depth,
                  (std::size_t{64} << 20U) + 64 * input.text.size())
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
    const GumboOutput* run() { return html::run(m_arena, m_options, m_names.text()); }
    TreeBuilder& builder() { return m_builder; }
    Error error() const { return refusal(m_arena.excess()); }

    /// Where the parser or the builder gave up.
    [[nodiscard]] std::size_t placeOfExcess() const
    {
        const auto* node = m_builder.tooDeep();
        if (!node)
            node = static_cast<const GumboNode*>(m_arena.lastNode());
        while (node && m_builder.originalOf(*node).empty())
            node = static_cast<const GumboNode*>(m_arena.nodeBefore(node));
        const std::string_view markup = node ? m_builder.originalOf(*node) : std::string_view();
        return m_arena.excess() == ParseArena::Excess::Attributes ? m_builder.placeOfAttributes(markup)
                                                                  : m_builder.placeOf(markup);
    }

private:
    StrangeCharacters m_source;
    ParserNames m_names;
    TreeBuilder m_builder;
    ParseArena m_arena;
    GumboOptions m_options = kGumboDefaultOptions;
};

} // namespace

namespace {

/// What `build` makes of the parser's tree: with other names if they matter and don't show.
template <class Build>
auto builtRightly(const ParserInput& input, const ParseLimits& limits, Build build)
{
    bool isMisread = false;
    const auto builtWith = [&](ParserNames::Way names) {
        Parser parser(input, limits, names);
        auto built = build(parser);
        isMisread = parser.builder().isMisread();
        return built;
    };
    auto built = builtWith(ParserNames::Way::Kept);
    if (!built || !isMisread)
        return built;
    auto again = builtWith(ParserNames::Way::Exchanged);
    return again && !isMisread ? std::move(again) : std::move(built);
}

} // namespace

Result<BuiltDocument> buildDocument(const ParserInput& input, const ParseLimits& limits)
{
    return builtRightly(input, limits, [](Parser& parser) -> Result<BuiltDocument> {
        const GumboOutput* const output = parser.run();
        auto document = std::make_unique<Document>();
        if (!output || !parser.builder().build(output->document->v.document.children, *document))
            return parser.error();
        parser.builder().placeDoctype(output->document->v.document, *document);
        parser.builder().moveLeadingCode(*document);
        return BuiltDocument{std::move(document), parser.builder().takeMarks()};
    });
}

std::optional<std::size_t> placeOfExcess(const ParserInput& input, const ParseLimits& limits)
{
    Parser parser(input, limits, ParserNames::Way::Kept);
    Document document;
    const GumboOutput* const output = parser.run();
    if (output && parser.builder().build(output->document->v.document.children, document))
        return {};
    return parser.placeOfExcess();
}

Result<NodeList> buildFragment(const ParserInput& input, const Element& context, const ParseLimits& limits)
{
    return builtRightly(input, limits, [&context](Parser& parser) -> Result<NodeList> {
        parser.setContext(context);
        const GumboOutput* const output = parser.run();
        Element holder("holder");
        if (!output || !parser.builder().build(output->root->v.element.children, holder))
            return parser.error();
        NodeList nodes;
        holder.swapChildren(nodes);
        return nodes;
    });
}

} // namespace luma::html
