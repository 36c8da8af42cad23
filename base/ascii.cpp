// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ascii.h"

namespace luma {

std::string asciiLower(std::string_view text)
{
    std::string result(text);
    for (char& c : result)
        c = asciiLower(c);
    return result;
}

bool isBlank(std::string_view text)
{
    return text.find_first_not_of(whiteSpace) == std::string_view::npos;
}

std::string_view trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
    return text.substr(0, text.find_last_not_of(whiteSpace) + 1);
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

} // namespace luma
