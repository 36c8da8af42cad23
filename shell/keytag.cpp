// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/keytag.h"

namespace luma {

namespace {

constexpr std::string_view fixedTag = "luma@desktop";
constexpr std::size_t longestTag = 100;
constexpr std::string_view safeCharacters = "abcdefghijklmnopqrstuvwxyz"
                                            "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                            "0123456789@._-";

std::string_view commentOf(std::string_view publicKey)
{
    publicKey = publicKey.substr(0, publicKey.find_first_of("\r\n"));
    for (int field = 0; field < 2; ++field) {
        const std::size_t blank = publicKey.find(' ');
        if (blank == std::string_view::npos)
            return {};
        publicKey.remove_prefix(blank + 1);
    }
    return publicKey;
}

} // namespace

std::string keyTag(std::string_view publicKey)
{
    std::string tag(commentOf(publicKey));
    if (tag.empty() || tag.size() > longestTag)
        return std::string(fixedTag);
    for (char& character : tag) {
        if (safeCharacters.find(character) == std::string_view::npos)
            character = '_';
    }
    return tag;
}

} // namespace luma
