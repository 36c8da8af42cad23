// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/servercode.h"

#include "base/ascii.h"

#include <algorithm>

namespace luma {

namespace {

constexpr std::size_t npos = std::string_view::npos;

// The next "<" that stands before `mark`, from `from` on. Looking for the mark is fast: few pages hold many.
std::size_t findOpening(std::string_view source, char mark, std::size_t from)
{
    for (std::size_t at = source.find(mark, from + 1); at != npos; at = source.find(mark, at + 1)) {
        if (source[at - 1] == '<')
            return at - 1;
    }
    return npos;
}

// Where the server code that begins at `open` ends; `open` itself where none begins there.
std::size_t endOfCode(std::string_view source, std::size_t open)
{
    const std::string_view rest = source.substr(open);
    const bool isAsp = rest.starts_with("<%");
    if (!isAsp && startsWithIgnoringAsciiCase(rest.substr(2), "xml"))
        return open;
    const std::size_t close = source.find(isAsp ? "%>" : "?>", open + 2);
    if (close != npos)
        return close + 2;
    // PHP may leave out the closing mark at the end of the file.
    const bool isPhp = startsWithIgnoringAsciiCase(rest, "<?php") || rest.starts_with("<?=");
    return isPhp ? source.size() : open;
}

} // namespace

std::optional<std::string> withMaskedServerCode(std::string_view source)
{
    std::optional<std::string> masked;
    std::size_t php = source.empty() ? npos : findOpening(source, '?', 0);
    std::size_t asp = source.empty() ? npos : findOpening(source, '%', 0);
    while (php != npos || asp != npos) {
        const std::size_t open = std::min(php, asp);
        const std::size_t end = endOfCode(source, open);
        if (end > open && !masked)
            masked.emplace(source);
        for (std::size_t i = open; i < end; ++i) {
            if ((*masked)[i] != '\n' && (*masked)[i] != '\r')
                (*masked)[i] = '\x1A';
        }
        const std::size_t next = std::max(end, open + 1);
        if (php != npos && php < next)
            php = next < source.size() ? findOpening(source, '?', next) : npos;
        if (asp != npos && asp < next)
            asp = next < source.size() ? findOpening(source, '%', next) : npos;
    }
    return masked;
}

} // namespace luma
