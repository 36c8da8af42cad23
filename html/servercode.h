// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A stretch of a page's source that is meant for a program on the server, in bytes.
struct ServerCode
{
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// The server code of a page (UTF-8), in order: PHP, ASP and JSP (<?php ... ?>, <% ... %>), the tags of templates ({{ ... }},
/// {% ... %}, {# ... #}) and server-side includes (<!--#include ... -->). PHP ends as its own reader has it: not in a string or a
/// comment of several lines, and at the end of the page if nothing else ends it. What an XML declaration or another
/// instruction of XML says is no server code. Any thread.
std::vector<ServerCode> serverCodeIn(std::string_view source);

/// What stands for each byte of masked server code.
inline constexpr char maskedServerCode = '\x1A';

/// `source` with its PHP, ASP and JSP replaced by maskedServerCode, so that what is left is read as a page. Line ends stay, and
/// with them every place in the page. Nothing when there is no such code. Any thread.
std::optional<std::string> withMaskedServerCode(std::string_view source);

/// `text`, a piece of what withMaskedServerCode() gave, for the user to read: "…" for each stretch of code. Any thread.
std::string withEllipses(std::string_view text);

} // namespace luma
