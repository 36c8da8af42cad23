// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/readtext.h"

#include <optional>
#include <string>
#include <string_view>

/// Changing a stretch of a page's source as little as an edit needs: what stays keeps its spelling, its references and its
/// white space. Text is UTF-8; any thread.
namespace luma::html {

class Element;

/// `raw` changed so that it reads as `text`: the characters at both ends that stay are kept as they are written, of server
/// code all or nothing. Of new text, `codes` are written as code where code may stand, and line feeds become `lineEnd`.
std::string patchedText(std::string_view raw, std::string_view text, TextPlace place,
                        const Document::ServerCodes& codes, std::string_view lineEnd);

/// The start tag `tag`, which was written for an element of this name, with the element's attributes: those that stay keep
/// their bytes, new ones stand behind the others, of repeated ones all go. Nothing when `tag` is no start tag.
std::optional<std::string> patchedStartTag(std::string_view tag, const Element& element,
                                           const Document::ServerCodes& codes, std::string_view lineEnd);

} // namespace luma::html
