// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/webreporttext.h"

#include "base/encoding.h"
#include "base/utf8.h"

namespace luma {

namespace {

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

void appendField(std::string& text, std::string_view value)
{
    if (!isValidUtf8(value))
        return appendField(text, Encoding().decoded(value));
    if (value.find_first_of(",\"\r\n") == std::string_view::npos) {
        text += value;
        return;
    }
    text += '"';
    for (const char c : value)
        text.append(c == '"' ? 2 : 1, c);
    text += '"';
}

} // namespace

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

void appendJson(std::string& text, std::string_view page, const WebLink& link)
{
    text += "{\"page\":";
    appendString(text, page);
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

void appendJson(std::string& text, const WebPage& page)
{
    if (!page.unreadable.empty()) {
        text += "{\"page\":";
        appendString(text, page.path);
        appendMember(text, "state", "unreadable");
        appendMember(text, "why", page.unreadable);
        text += "}\n";
    }
    for (const WebLink& link : page.links)
        appendJson(text, page.path, link);
}

void appendJson(std::string& text, std::string_view key, std::string_view subpath)
{
    text.append("{\"").append(key).append("\":");
    appendString(text, subpath);
    text += "}\n";
}

void appendCsv(std::string& text, const WebPage& page, const WebLink* link)
{
    appendField(text, page.path);
    if (!link) {
        text.append(page.unreadable.empty() ? ",,,,,," : ",,,,,unreadable,");
        appendField(text, page.unreadable);
        text += ",\r\n";
        return;
    }
    text.append(",").append(std::to_string(link->line)).append(",").append(std::to_string(link->column));
    for (const std::string_view value :
         {nameOf(link->place), std::string_view(link->value), nameOf(link->state), textOf(link->why),
          std::string_view(link->suggestion)}) {
        text += ',';
        appendField(text, value);
    }
    text += "\r\n";
}

} // namespace luma
