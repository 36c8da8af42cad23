// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/webreporttext.h"
#include "lumactl/commandarguments.h"

#include <string>
#include <string_view>
#include <vector>

/// What the commands that report links share: their options and the shape of their output.
namespace luma {

/// The options of every report, then the command's own ones.
CommandArguments reportArguments(const std::vector<std::string>& arguments,
                                 std::vector<std::string_view> flags = {},
                                 std::vector<std::string_view> options = {});

/// Why these options can't be used together; empty if they can.
std::string conflictIn(const CommandArguments& line);

LinkRules linkRules(const CommandArguments& line);
/// With the web addresses of the saved site that `site` names, if it names one.
WebRules webRules(const CommandArguments& line, const std::string& site);

/// Appends the page's `heading` and one line for each of its links.
void appendLines(std::string& text, const std::string& heading, const WebPage& page);

/// The part of a command's help that describes the options of every report.
inline constexpr std::string_view reportOptionsHelp =
    "  --json               one JSON object a line: page, line, column, place, link,\n"
    "                       state, why, suggestion\n"
    "  --web-address URL    where SITE is on the web, so that links with its address\n"
    "                       are its own; may be given several times\n"
    "  --index NAME         the index page of folders instead of index.html, index.htm,\n"
    "                       index.xhtml, index.php and default.htm; several times\n"
    "  --short-addresses    \"about\" leads to about.html, too\n"
    "  --by-letter          read links letter by letter: href, src and background alone,\n"
    "                       nothing decoded, queries part of the name\n";

} // namespace luma
