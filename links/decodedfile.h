// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/pageencoding.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The text of one file after another, decoded as a browser does, and where it stands in the file. It keeps its memory for the
/// next one. Each thread has one of its own.
class DecodedFile final
{
public:
    enum class Places : std::uint8_t { Unknown, Known };

    /// `bytes` must outlive what is read. To know the places in the file costs time where it must be decoded.
    void read(std::string_view bytes, MarkupLanguage language, Places places);

    /// UTF-8, without a byte-order mark; the bytes themselves where they are that.
    [[nodiscard]] std::string_view text() const { return m_text; }
    [[nodiscard]] const PageEncoding& encoding() const { return m_encoding; }
    /// Where in the file's bytes a place of the text is; only with Places::Known.
    [[nodiscard]] std::size_t placeInFile(std::size_t place) const
    {
        return m_encoding.markLength + (m_places.empty() ? place : m_places[place]);
    }

private:
    PageEncoding m_encoding;
    std::string m_decoded;
    std::string_view m_text;
    std::vector<std::uint32_t> m_places; // empty where the text is the bytes
};

/// The language by which the encoding of a page or style sheet of this name is told.
MarkupLanguage markupLanguage(std::string_view name);

} // namespace luma
