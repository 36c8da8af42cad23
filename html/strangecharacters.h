// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma::html {

/// The control characters and non-characters that the parser would replace by U+FFFD, though HTML keeps them
/// (old pages have them where an encoding was mistaken): they go through it under the guise of private-use
/// characters that the page does not contain.
class StrangeCharacters final
{
public:
    /// Takes the page or markup, which must be UTF-8 and outlive this object.
    explicit StrangeCharacters(std::string_view source);

    /// What the parser is to read; the source itself when nothing strange is in it.
    std::string_view disguised() const { return m_isDisguised ? std::string_view(m_disguised) : m_source; }
    /// Parsed text as it was meant. Text that is no UTF-8 comes from references beyond Unicode; what is
    /// wrong in it becomes U+FFFD.
    std::string restored(std::string_view text) const;

private:
    std::string_view m_source;
    std::string m_disguised;
    char32_t m_guise = 0; // the private-use character that stands for the first strange one
    bool m_isDisguised = false;
};

} // namespace luma::html
