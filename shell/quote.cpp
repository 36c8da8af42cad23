// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/quote.h"

#include "base/ascii.h"

namespace luma {

namespace {

bool needsBackslash(char c)
{
    const bool isAscii = static_cast<unsigned char>(c) < 0x80;
    return isAscii && !isAsciiAlphanumeric(c) && std::string_view("._-/").find(c) == std::string_view::npos;
}

} // namespace

std::string quotedForShell(std::string_view name)
{
    if (name.empty())
        return "''";
    std::string word;
    word.reserve(name.size() + name.size() / 8);
    for (const char character : name) {
        if (character == '\n') { // the shell would drop it after a backslash
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
