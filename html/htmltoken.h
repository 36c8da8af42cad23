// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace luma {

/// How an attribute's value is written.
enum class Quotes : std::uint8_t { NoValue, None, Single, Double };

/// An attribute as written: both views point into the source, the value without its quotes and not decoded.
/// For NoValue the value is empty and points to the end of the name.
struct HtmlAttribute
{
    std::string_view name;
    std::string_view value;
    Quotes quotes = Quotes::NoValue;
};

/// What the text before a token is, which decides whether it has character references.
enum class TextKind : std::uint8_t { Data, Rcdata, Rawtext, ScriptData, Plaintext };

enum class HtmlTokenKind : std::uint8_t {
    StartTag,
    EndTag,
    Comment, // bogus comments too
    Doctype,
    Cdata,
    EmptyEndTag, // "</>", which browsers ignore
    End          // starts where the last text ends: a tag cut off by the end of the page is dropped
};

/// One token of HTML; everything between two tokens is text.
struct HtmlToken
{
    HtmlTokenKind kind = HtmlTokenKind::End;
    TextKind textBefore = TextKind::Data;
    bool selfClosing = false;
    std::size_t begin = 0; // bytes into the source
    std::size_t end = 0;
    std::string_view name;    // of a tag, as written
    std::string_view content; // of a comment or CDATA section, as written
    /// As written, duplicates included; of attributes with the same name the first counts.
    std::vector<HtmlAttribute> attributes;
};

/// Where `part`, which must point into `source`, starts in it, in bytes.
inline std::size_t offsetIn(std::string_view source, std::string_view part)
{
    return static_cast<std::size_t>(part.data() - source.data());
}

} // namespace luma
