// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/reportoptions.h"

#include "base/encoding.h"
#include "base/utf8.h"

namespace luma {

namespace {

std::string_view nameOf(LinkState state)
{
    switch (state) {
    case LinkState::External:
        return "external";
    case LinkState::Present:
        return "present";
    case LinkState::Missing:
        return "missing";
    case LinkState::NotJudged:
        return "not judged";
    }
    return {};
}

// A JSON string (RFC 8259, 7); bytes that are not UTF-8 become U+FFFD.
void appendString(std::string& text, std::string_view value)
{
    if (!isValidUtf8(value)) {
        appendString(text, Encoding().decoded(value));
        return;
    }
    text += '"';
    for (const char c : value) {
        if (c == '"' || c == '\\') {
            text.append(1, '\\').append(1, c);
        } else if (static_cast<unsigned char>(c) < 0x20) {
            constexpr std::string_view digits = "0123456789abcdef";
            const auto code = static_cast<unsigned char>(c);
            text.append("\\u00").append(1, digits[code >> 4U]).append(1, digits[code & 15U]);
        } else {
            text += c;
        }
    }
    text += '"';
}

void appendMember(std::string& text, std::string_view key, std::string_view value)
{
    text.append(",\"").append(key).append("\":");
    if (value.empty())
        text += "null";
    else
        appendString(text, value);
}

} // namespace

CommandArguments reportArguments(const std::vector<std::string>& arguments,
                                 std::vector<std::string_view> flags, std::vector<std::string_view> options)
{
    flags.insert(flags.end(), {"--json", "--by-letter", "--short-addresses"});
    options.insert(options.end(), {"--web-address", "--index"});
    return {arguments, flags, options};
}

std::string conflictIn(const CommandArguments& line)
{
    if (!line.has("--by-letter"))
        return {};
    for (const std::string_view option : {"--json", "--no-fragments", "--short-addresses", "--web-address",
                                          "--index", "--site", "--dry-run"}) {
        if (line.has(option))
            return std::string(option) + " can't be used with --by-letter";
    }
    return {};
}

LinkRules linkRules(const CommandArguments& line)
{
    return line.has("--by-letter") ? LinkRules::Letter : LinkRules::Browser;
}

WebRules webRules(const CommandArguments& line)
{
    WebRules rules;
    rules.webAddresses = line.values("--web-address");
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

void appendJson(std::string& text, const WebPage& page)
{
    if (!page.unreadable.empty()) {
        text += "{\"page\":";
        appendString(text, page.path);
        appendMember(text, "state", "unreadable");
        appendMember(text, "why", page.unreadable);
        text += "}\n";
    }
    for (const WebLink& link : page.links) {
        text += "{\"page\":";
        appendString(text, page.path);
        text.append(",\"line\":").append(std::to_string(link.line));
        text.append(",\"column\":").append(std::to_string(link.column));
        appendMember(text, "place", nameOf(link.place));
        text += ",\"link\":";
        appendString(text, link.value);
        appendMember(text, "state", nameOf(link.state));
        appendMember(text, "why", textOf(link.why));
        appendMember(text, "suggestion", link.suggestion);
        text += "}\n";
    }
}

void appendJson(std::string& text, std::string_view key, std::string_view subpath)
{
    text.append("{\"").append(key).append("\":");
    appendString(text, subpath);
    text += "}\n";
}

} // namespace luma
