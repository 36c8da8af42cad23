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

Result<std::unique_ptr<Document>> parseWithSource(std::string_view page, const ParseLimits& limits)
{
    if (auto error = refusal(page, limits))
        return *error;
    const std::string_view text = withoutMark(page);
    const MaskedSource masked(text);
    const std::string_view prefix = missingBefore(masked.text());
    const std::string prefixed = prefix.empty() ? std::string() : std::string(prefix).append(masked.text());
    auto built = buildDocument({prefix.empty() ? masked.text() : prefixed, &masked, prefix.size()}, limits);
    if (!built)
        return built.error();
    Document& document = *built->document;
    document.setByteOrderMark(page.starts_with(utf8ByteOrderMark));
    document.trustServerCode(text);
    PageSource::attach(std::string(text), document, built->marks);
    return std::move(built->document);
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
