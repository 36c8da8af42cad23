// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/reportoptions.h"

namespace luma {

CommandArguments reportArguments(const std::vector<std::string>& arguments,
                                 std::vector<std::string_view> flags, std::vector<std::string_view> options)
{
    flags.insert(flags.end(), {"--json", "--by-letter", "--short-addresses"});
    options.insert(options.end(), {"--web-address", "--index"});
    return {arguments, flags, options};
}

std::string conflictIn(const CommandArguments& line)
{
    if (line.has("-0") && line.has("--json"))
        return "-0 can't be used with --json";
    if (!line.has("--by-letter"))
        return {};
    for (const std::string_view option : {"--json", "--no-fragments", "--short-addresses", "--web-address",
                                          "--index", "--site", "--dry-run", "--anyway"}) {
        if (line.has(option))
            return std::string(option) + " can't be used with --by-letter";
    }
    return {};
}

LinkRules linkRules(const CommandArguments& line)
{
    return line.has("--by-letter") ? LinkRules::Letter : LinkRules::Browser;
}

WebRules webRules(const CommandArguments& line, const std::string& site)
{
    WebRules rules;
    rules.webAddresses = line.values("--web-address");
    if (const auto record = savedSite(site); record && *record) {
        const std::vector<std::string> own = (*record)->webAddresses();
        rules.webAddresses.insert(rules.webAddresses.end(), own.begin(), own.end());
    }
    if (line.has("--index"))
        rules.indexNames = line.values("--index");
    rules.extensionsMayBeLeftOut = line.has("--short-addresses");
    rules.fragmentsAreChecked = !line.has("--no-fragments");
    return rules;
}

void appendLines(std::string& text, const std::string& heading, const WebPage& page)
{
    text.append(heading).append("\n");
    if (!page.unreadable.empty())
        text.append("    *** UNREADABLE *** ").append(page.unreadable).append("\n");
    for (const WebLink& link : page.links) {
        text.append("    ").append(std::to_string(link.line)).append(":").append(std::to_string(link.column));
        text.append("  ").append(nameOf(link.place)).append(" : ").append(link.value);
        if (link.state == LinkState::Missing)
            text.append("    *** MISSING *** ").append(textOf(link.why));
        if (link.state == LinkState::NotJudged)
            text.append("    not judged: server code");
        if (!link.suggestion.empty())
            text.append("; did you mean ").append(link.suggestion).append("?");
        text.append("\n");
    }
}

} // namespace luma
