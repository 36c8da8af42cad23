// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkplaces.h"

#include "base/ascii.h"
#include "base/utf8.h"

#include <algorithm>
#include <array>

namespace luma {

namespace {

struct TableRow
{
    LinkPlace place;
    std::string_view attribute;
    LinkSyntax syntax;
    std::string_view elements; // with a blank before and behind each; empty: any element
};

using enum LinkSyntax;

// HTML standard, "Attributes" (index), with what older pages have; SVG 2, "Linking". By the attributes' lengths, which
// tell most attributes apart.
constexpr auto table = std::to_array<TableRow>({
    {LinkPlace::Src, "src", Address,
     " img script iframe source audio video embed input track frame bgsound "},
    {LinkPlace::Href, "href", Address,
     " a link area image use script animate animatemotion animatetransform discard feimage filter lineargradient "
     "mpath pattern radialgradient set textpath "},
    {LinkPlace::Data, "data", Address, " object "},
    {LinkPlace::Cite, "cite", Address, " blockquote q del ins "},
    {LinkPlace::Style, "fill", StyleDeclarations, ""}, // SVG 2, "Presentation attributes"
    {LinkPlace::Style, "mask", StyleDeclarations, ""},
    {LinkPlace::Ping, "ping", AddressList, " a area "},
    {LinkPlace::Style, "style", StyleDeclarations, ""},
    {LinkPlace::Srcset, "srcset", ImageCandidates, " img source "},
    {LinkPlace::Poster, "poster", Address, " video "},
    {LinkPlace::Action, "action", Address, " form "},
    {LinkPlace::Style, "cursor", StyleDeclarations, ""},
    {LinkPlace::Style, "filter", StyleDeclarations, ""},
    {LinkPlace::Style, "stroke", StyleDeclarations, ""},
    {LinkPlace::UseMap, "usemap", Address, " img object input "},
    {LinkPlace::LongDesc, "longdesc", Address, " img iframe frame "},
    {LinkPlace::Manifest, "manifest", Address, " html "},
    {LinkPlace::Style, "clip-path", StyleDeclarations, ""},
    {LinkPlace::FormAction, "formaction", Address, " button input "},
    {LinkPlace::Background, "background", Address, " body table thead tbody tfoot tr td th "},
    {LinkPlace::Style, "marker-end", StyleDeclarations, ""},
    {LinkPlace::Style, "marker-mid", StyleDeclarations, ""},
    {LinkPlace::XlinkHref, "xlink:href", Address, ""},
    {LinkPlace::ImageSrcset, "imagesrcset", ImageCandidates, " link "},
    {LinkPlace::Style, "marker-start", StyleDeclarations, ""},
});

static_assert(std::is_sorted(table.begin(), table.end(), [](const TableRow& a, const TableRow& b) {
    return a.attribute.size() < b.attribute.size();
}));

// For each length below 16, where the rows with a shorter attribute end.
constexpr auto firstOfLength = [] {
    std::array<std::uint8_t, 17> first{};
    for (std::size_t length = 0; length < first.size(); ++length) {
        for (const TableRow& row : table)
            first.at(length) =
                static_cast<std::uint8_t>(first.at(length) + (row.attribute.size() < length ? 1 : 0));
    }
    return first;
}();

// Open Graph, Twitter cards and tiles.
constexpr auto addressProperties = std::to_array<std::string_view>({"og:image",
                                                                    "og:image:url",
                                                                    "og:image:secure_url",
                                                                    "og:url",
                                                                    "og:video",
                                                                    "og:video:url",
                                                                    "og:video:secure_url",
                                                                    "og:audio",
                                                                    "og:audio:url",
                                                                    "og:audio:secure_url",
                                                                    "twitter:image",
                                                                    "twitter:image:src",
                                                                    "twitter:player",
                                                                    "twitter:player:stream",
                                                                    "msapplication-tileimage",
                                                                    "msapplication-config",
                                                                    "msapplication-square70x70logo",
                                                                    "msapplication-square150x150logo",
                                                                    "msapplication-square310x310logo",
                                                                    "msapplication-wide310x150logo"});

bool isInList(std::string_view name, std::string_view list)
{
    for (std::size_t at = 1; at < list.size();) {
        const std::size_t end = list.find(' ', at);
        if (end - at == name.size() && equalIgnoringAsciiCase(list.substr(at, name.size()), name))
            return true;
        at = end + 1;
    }
    return false;
}

} // namespace

std::string_view nameOf(LinkPlace place)
{
    switch (place) {
    case LinkPlace::MetaContent:
        return "content";
    case LinkPlace::Style:
        return "style";
    case LinkPlace::SheetUrl:
        return "url()";
    case LinkPlace::SheetImport:
        return "@import";
    default:
        break;
    }
    const auto row = std::find_if(table.begin(), table.end(),
                                  [place](const TableRow& entry) { return entry.place == place; });
    return row->attribute;
}

std::optional<PlaceAndSyntax> linkPlaceOf(std::string_view element, std::string_view attribute)
{
    const std::size_t length = attribute.size();
    if (length + 1 >= firstOfLength.size())
        return std::nullopt;
    for (std::size_t i = firstOfLength[length]; i < firstOfLength[length + 1]; ++i) {
        const TableRow& row = table[i];
        if (equalIgnoringAsciiCase(row.attribute, attribute) &&
            (row.elements.empty() || isInList(element, row.elements)))
            return PlaceAndSyntax{row.place, row.syntax};
    }
    return std::nullopt;
}

bool isAddressProperty(std::string_view property)
{
    return std::any_of(addressProperties.begin(), addressProperties.end(),
                       [property](std::string_view name) { return equalIgnoringAsciiCase(name, property); });
}

} // namespace luma
