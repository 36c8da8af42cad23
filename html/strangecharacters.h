// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

/// Carries control characters and non-characters through the parser, which would replace them with U+FFFD
/// although HTML keeps them (old pages have them where an encoding was mistaken). During the parse each is
/// disguised as a private-use character that the page does not contain.
class StrangeCharacters final
{
public:
    /// `source` must be UTF-8 and outlive this object.
    explicit StrangeCharacters(std::string_view source);

    /// The text for the parser; the source itself if it has no strange characters.
    std::string_view disguised() const { return m_isDisguised ? std::string_view(m_disguised) : m_source; }
    /// The original form of parsed text. References beyond Unicode make the parser give invalid UTF-8; its
    /// invalid bytes become U+FFFD.
    std::string restored(std::string_view text) const;
    /// The place in the source that belongs to one in the disguised text, both between characters, in bytes.
    std::size_t sourcePlace(std::size_t disguisedPlace) const;

private:
    std::string_view m_source;
    struct Place
    {
        std::size_t disguised;
        std::size_t source;
    };

    std::string m_disguised;
    std::vector<Place> m_places; // behind each character that was exchanged
    char32_t m_guise = 0;        // the private-use character that stands for the first strange one
    bool m_isDisguised = false;
};

} // namespace luma::html
