// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

/// What a link is, and what the text of one means. Text is UTF-8, paths are bytes; any thread.
namespace luma {

/// The attributes whose values are links, in the order in which they are scanned and reported.
inline constexpr auto linkAttributes = std::to_array<std::string_view>({"href", "src", "background"});
inline constexpr auto pageExtensions = std::to_array<std::string_view>({"html", "xhtml", "xml"});
inline constexpr std::string_view styleSheetExtension = "css";
inline constexpr auto plainTextExtensions = std::to_array<std::string_view>({"txt", "js"});
/// A regular expression, searched for with letter case ignored: what it matches is never checked or
/// rewritten.
inline constexpr std::string_view externalLinkPattern = "^(https{0,1}://)|(mailto:)|(^#).*";
/// The desktop's own file, skipped wherever a folder is walked.
inline constexpr std::string_view folderSettingsName = ".DS_Store";

enum class FileKind : unsigned char { Page, StyleSheet, PlainText, Other };

/// By the extension of `name`, the text after its last dot, letter case counting. A name that only begins
/// with a dot has none.
FileKind fileKind(std::string_view name);

/// Whether externalLinkPattern matches.
bool isExternalLink(std::string_view link);

/// Whether `link` begins with a scheme other than those above ("javascript:", "data:", "tel:") or names a
/// host
/// ("//host/..."), so that it is no path that could be rewritten (RFC 3986, 4.1 and 4.2).
bool hasSchemeOrHost(std::string_view link);

/// `link` as reports show and check it: what follows ".php?" on its line is cut off with the question mark.
std::string withoutPhpQuery(std::string_view link);

/// The path that a page in `folder` means by `link` when links are checked: the two put together as they are,
/// with "/index" at the end taken as its folder.
std::string checkedPath(std::string_view folder, std::string_view link);

/// The link by which a page in `baseFolder` reaches `target`; both are absolute. Empty for the base folder
/// itself, a run of "../" for a folder above it.
std::string relativePath(const std::filesystem::path& target, const std::filesystem::path& baseFolder);

/// The place that `link` means in a page in `folder`: ".." removes a component, any other piece is appended
/// as it is, nothing is decoded or cut off. A link that begins with "/" is an absolute path.
std::filesystem::path resolveRelativeLink(std::string_view link, const std::filesystem::path& folder);

/// `path` without "." and empty components, for comparing places.
std::string comparablePath(std::string_view path);

/// Whether `path` is `ancestor` or below it; both comparable paths.
bool isAtOrBelow(std::string_view path, std::string_view ancestor);

/// `link` up to its query or fragment.
std::string_view pathPart(std::string_view link);

/// What a link must begin with to count as one to the file that `relative` (a relativePath) reaches: index
/// pages count by their folder, so "/index." up to the last "html" is cut out.
std::string linkedPrefix(std::string_view relative);

} // namespace luma
