// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/ascii.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// What a link is and what its text means. Text is UTF-8, paths are bytes; any thread.
namespace luma {

/// The attributes whose values are links, in lower case, in the order in which links are read and reported.
/// This is the only place to add one.
inline constexpr auto linkAttributes = std::to_array<std::string_view>({"href", "src", "background"});

/// The lengths of their names as bits, which rule out most other attributes without a comparison.
inline constexpr std::uint64_t linkAttributeLengths = [] {
    std::uint64_t lengths = 0;
    for (const std::string_view name : linkAttributes)
        lengths |= std::uint64_t{1} << name.size();
    return lengths;
}();

/// The index into linkAttributes of the attribute with this name, letter case ignored; nothing when its value
/// is no link.
inline std::optional<std::size_t> linkAttributeIndex(std::string_view name)
{
    if (name.size() >= 64 || (linkAttributeLengths >> name.size() & 1U) == 0)
        return std::nullopt;
    for (std::size_t i = 0; i < linkAttributes.size(); ++i) {
        if (name.size() == linkAttributes[i].size() && equalIgnoringAsciiCase(name, linkAttributes[i]))
            return i;
    }
    return std::nullopt;
}

/// The extensions of pages and plain-text files, and that of style sheets; letter case counts.
inline constexpr auto pageExtensions = std::to_array<std::string_view>({"html", "xhtml", "xml"});
inline constexpr std::string_view styleSheetExtension = "css";
inline constexpr auto plainTextExtensions = std::to_array<std::string_view>({"txt", "js"});
/// The desktop's own file, skipped in every folder.
inline constexpr std::string_view folderSettingsName = ".DS_Store";

enum class FileKind : unsigned char { Page, StyleSheet, PlainText, Other };

/// By the extension of `name`, the text after its last dot. A name whose only dot comes first has none.
FileKind fileKind(std::string_view name);

/// Whether a link is external, which means never checked or rewritten: it begins with "http://", "https://"
/// or "#", or has "mailto:" anywhere; letter case ignored.
bool isExternalLink(std::string_view link);

/// Whether `link` begins with any other scheme ("javascript:", "data:", "tel:") or names a host
/// ("//host/..."), so that it is no path that could be rewritten (RFC 3986, 4.1 and 4.2).
bool hasSchemeOrHost(std::string_view link);

/// `link` as reports show and check it: "?" after ".php" and the rest of the line are removed.
std::string withoutPhpQuery(std::string_view link);

/// The path that a link check looks for: folder and link joined unchanged, without "index" where it ends in
/// "/index".
std::string checkedPath(std::string_view folder, std::string_view link);

/// The link by which a page in `baseFolder` reaches `target`; both are absolute. Empty for the base folder
/// itself, a run of "../" for a folder above it.
std::string relativePath(const std::filesystem::path& target, const std::filesystem::path& baseFolder);

/// Where `link` leads from a page in `folder`: ".." removes a component, any other piece is appended. Nothing
/// is decoded or cut off. A link that begins with "/" is an absolute path.
std::filesystem::path resolveRelativeLink(std::string_view link, const std::filesystem::path& folder);

/// `path` without "." and empty components, for comparing paths.
std::string comparablePath(std::string_view path);

/// `link` up to its query or fragment.
std::string_view pathPart(std::string_view link);

/// What a link must begin with to count for the file that `relative` (from relativePath) leads to. An index
/// page counts by its folder: the path is cut from "/index." to the last "html".
std::string linkedPrefix(std::string_view relative);

} // namespace luma
