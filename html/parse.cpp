// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/parse.h"

#include "base/ascii.h"
#include "base/usertext.h"
#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/htmlscanner.h"
#include "html/maskedsource.h"
#include "html/pagesource.h"
#include "html/tagtraits.h"
#include "html/treebuilder.h"

#include <array>
#include <optional>

namespace luma::html {

namespace {

std::optional<Error> refusal(std::string_view source, const ParseLimits& limits)
{
    if (source.size() > limits.bytes)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "It is larger than %1 MB."),
                              {std::to_string(limits.bytes >> 20U)})};
    if (!isValidUtf8(source))
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "It is not UTF-8."))};
    return {};
}

/// What a page that is a part of a table, for a server to include, must follow to be read as one.
std::string_view missingBefore(std::string_view page)
{
    static constexpr std::array<std::string_view, 9> parts = {"caption", "col", "colgroup", "tbody", "td",
                                                              "tfoot",   "th",  "thead",    "tr"};
    HtmlScanner scanner(page);
    HtmlToken token;
    std::size_t done = 0;
    while (scanner.next(token) && isBlank(page.substr(done, token.begin - done))) {
        if (token.kind == HtmlTokenKind::StartTag)
            return isOneOf(token.name, parts) ? "<table>" : "";
        if (token.kind != HtmlTokenKind::Comment)
            break;
        done = token.end;
    }
    return {};
}

std::string_view withoutMark(std::string_view page)
{
    return page.starts_with(utf8ByteOrderMark) ? page.substr(utf8ByteOrderMark.size()) : page;
}

NodeList textNode(std::string_view text)
{
    NodeList nodes;
    if (!text.empty())
        nodes.push_back(CharacterData::text(text));
    return nodes;
}

} // namespace

Result<std::unique_ptr<Document>> parse(std::string_view page, const ParseLimits& limits)
{
    if (auto error = refusal(page, limits))
        return *error;
    auto built = buildDocument({withoutMark(page)}, limits);
    if (!built)
        return built.error();
    built->document->setByteOrderMark(page.starts_with(utf8ByteOrderMark));
    return std::move(built->document);
}

namespace {

/// A page with its server code masked, as a whole page.
class PreparedPage final
{
public:
    /// `text` must outlive this object.
    explicit PreparedPage(std::string_view text) : m_masked(text), m_prefix(missingBefore(m_masked.text()))
    {
        if (!m_prefix.empty())
            m_prefixed = std::string(m_prefix).append(m_masked.text());
    }

    [[nodiscard]] ParserInput input() const
    {
        return {m_prefix.empty() ? m_masked.text() : m_prefixed, &m_masked, m_prefix.size()};
    }

private:
    MaskedSource m_masked;
    std::string_view m_prefix;
    std::string m_prefixed;
};

} // namespace

Result<std::unique_ptr<Document>> parseWithSource(std::string_view page, const ParseLimits& limits)
{
    if (auto error = refusal(page, limits))
        return *error;
    const std::string_view text = withoutMark(page);
    const PreparedPage prepared(text);
    auto built = buildDocument(prepared.input(), limits);
    if (!built)
        return built.error();
    Document& document = *built->document;
    document.setByteOrderMark(page.starts_with(utf8ByteOrderMark));
    document.trustServerCode(text);
    PageSource::attach(std::string(text), document, built->marks);
    return std::move(built->document);
}

std::optional<std::size_t> placeOfRefusal(std::string_view page, const ParseLimits& limits)
{
    if (page.size() > limits.bytes)
        return limits.bytes;
    if (!isValidUtf8(page)) {
        std::size_t place = 0;
        while (const std::size_t length = characterLength(page.substr(place)))
            place += length;
        return place;
    }
    const std::string_view text = withoutMark(page);
    const auto place = placeOfExcess(PreparedPage(text).input(), limits);
    return place ? std::optional(*place + page.size() - text.size()) : std::nullopt;
}

Result<NodeList> parseFragment(std::string_view markup, const Element& context, const ParseLimits& limits)
{
    if (auto error = refusal(markup, limits))
        return *error;
    return hasRawText(context) ? textNode(markup) : buildFragment({markup}, context, limits);
}

Result<NodeList> parseSourceFragment(std::string_view source, const Element& context,
                                     const ParseLimits& limits)
{
    if (auto error = refusal(source, limits))
        return *error;
    const MaskedSource masked(source);
    if (hasRawText(context))
        return textNode(masked.rawText(0, source.size()));
    return buildFragment({masked.text(), &masked}, context, limits);
}

} // namespace luma::html
