// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/characterreferences.h"

#include <string>
#include <string_view>
#include <vector>

/// A text of a page as its source writes it, and how new text is written there. Text is UTF-8; any thread.
namespace luma::html {

/// Where a text stands, which says what must be escaped in it.
enum class TextPlace { Text, EscapableText, RawText, DoubleQuoted, SingleQuoted };

/// The places of a text's source between characters, and its text. In an element's text, tags that mean nothing there
/// (</body> with white space behind it) stand for nothing.
struct ReadText
{
    std::vector<ValueBoundary> boundaries;
    std::string text;
};

ReadText readText(std::string_view raw, TextPlace place);

/// `text` with the references that it needs there; its line feeds become `lineEnd`.
std::string escapedText(std::string_view text, TextPlace place, std::string_view lineEnd);

} // namespace luma::html
