// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/ascii.h"

#include <algorithm>

namespace luma::html {

std::string lowered(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = lowered(c);
    return result;
}

bool equalIgnoringCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && startsWithIgnoringCase(a, b);
}

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), text.begin(),
                      [](char a, char b) { return lowered(a) == lowered(b); });
}

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(whiteSpace) == std::string_view::npos;
}

std::vector<std::string_view> words(std::string_view text)
{
    std::vector<std::string_view> result;
    for (std::size_t at = text.find_first_not_of(whiteSpace); at != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(whiteSpace, at), text.size());
        result.push_back(text.substr(at, end - at));
        at = text.find_first_not_of(whiteSpace, end);
    }
    return result;
}

std::string simplified(std::string_view text)
{
    std::string result;
    for (const std::string_view word : words(text)) {
        if (!result.empty())
            result += ' ';
        result += word;
    }
    return result;
}

} // namespace luma::html
