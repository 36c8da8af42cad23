// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quote.h"

namespace luma {

namespace {

// Spelt out, because isalnum() follows the locale.
constexpr std::string_view plainCharacters = "abcdefghijklmnopqrstuvwxyz"
                                             "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                             "0123456789._-/";

bool needsBackslash(char character)
{
    const bool isAscii = static_cast<unsigned char>(character) < 0x80;
    return isAscii && plainCharacters.find(character) == std::string_view::npos;
}

} // namespace

std::string quotedForShell(std::string_view name)
{
    if (name.empty())
        return "''";
    std::string word;
    word.reserve(name.size() + name.size() / 8);
    for (const char character : name) {
        if (character == '\n') { // after a backslash the shell would drop it
            word += "'\n'";
            continue;
        }
        if (needsBackslash(character))
            word += '\\';
        word += character;
    }
    return word;
}

} // namespace luma
