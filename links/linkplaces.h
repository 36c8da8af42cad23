// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The one table of the places that hold addresses. To add a place, add it to LinkPlace and to the table in
/// linkplaces.cpp.
namespace luma {

/// An attribute that holds addresses, or a place in a style sheet.
enum class LinkPlace : std::uint8_t {
    Href,
    Src,
    Srcset,
    ImageSrcset,
    Poster,
    Data,
    Action,
    FormAction,
    Cite,
    Ping,
    Background,
    LongDesc,
    Manifest,
    UseMap,
    XlinkHref,
    MetaContent,
    Style,      // url() in a style attribute, or one of svg that stands for a style
    SheetUrl,   // url() in a style element or sheet
    SheetImport // @import
};

/// How an attribute's value holds addresses.
enum class LinkSyntax : std::uint8_t {
    Address,
    AddressList,     // with blanks between (HTML standard, ping)
    ImageCandidates, // with descriptors (HTML standard, "srcset attributes")
    Refresh,         // "5; url=x" (HTML standard, "shared declarative refresh steps")
    StyleDeclarations,
    StyleSheet // the text of a style sheet, no attribute
};

/// The place's name as reports show it: "href", "srcset", "url()".
std::string_view nameOf(LinkPlace place);

struct PlaceAndSyntax
{
    LinkPlace place;
    LinkSyntax syntax;
};

/// What `attribute` of an element named `element` holds, letter case ignored; nothing where that is no address.
/// The attributes of meta depend on each other and are told by isAddressProperty(). Any thread.
std::optional<PlaceAndSyntax> linkPlaceOf(std::string_view element, std::string_view attribute);

/// Whether the content of a meta element with this property or name is an address ("og:image").
bool isAddressProperty(std::string_view property);

} // namespace luma
