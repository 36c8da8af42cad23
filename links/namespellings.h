// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/namesearch.h"

#include <bitset>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Tells quickly whether a page or style sheet may write one of some file names, in whatever spelling: plain,
/// percent-encoded, with character references or CSS escapes, or broken by line ends. It may say yes without reason, never
/// no. Unchanging once made; any thread.
class NameSpellings final
{
public:
    explicit NameSpellings(const std::vector<std::string>& names);

    [[nodiscard]] bool mayBeIn(std::string_view bytes) const;

private:
    [[nodiscard]] bool isOfName(unsigned code) const { return code > 0x7F || m_characters[code]; }
    [[nodiscard]] bool mayBeReference(std::string_view behindAmpersand) const;
    [[nodiscard]] bool mayBeEscape(std::string_view behindBackslash) const;
    [[nodiscard]] bool isBrokenName(std::string_view bytes, std::size_t at) const;

    NameSearch m_names;
    bool m_mayBeAnyBytes = false; // a name beyond ASCII has other bytes in other encodings
    std::bitset<256> m_characters;
    std::vector<std::string> m_references; // that stand for characters of the names
};

} // namespace luma
