// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/browserchecker.h"

#include <string>
#include <string_view>

/// Reports on links as text for programs. Everything appends to `text`, UTF-8. Any thread.
namespace luma {

/// "external", "present", "missing", "not judged".
std::string_view nameOf(LinkState state);

/// Appends a JSON object and a line feed: page, line, column, place, link, state, why, suggestion.
void appendJson(std::string& text, std::string_view page, const WebLink& link);
/// Appends such an object for each link of the page, and one for a page that can't be read.
void appendJson(std::string& text, const WebPage& page);
/// Appends an object with one member, for a file that is reported as a whole.
void appendJson(std::string& text, std::string_view key, std::string_view subpath);

/// The first line of a report as comma-separated values (RFC 4180).
inline constexpr std::string_view csvHeader = "page,line,column,place,link,state,why,suggestion\r\n";
/// Appends the line of a link, or of the page as a whole where `link` is null. Names that are not UTF-8 get U+FFFD.
void appendCsv(std::string& text, const WebPage& page, const WebLink* link);

} // namespace luma
