// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "base/result.h"
#include "html/pageencoding.h"
#include "links/pagereader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Reads the addresses of one page or style sheet of a site after another from their files, in the encoding that a
/// browser takes each for, with server code masked. What it gives is valid until the next read. Each thread has one
/// of its own.
class SitePageReader final
{
public:
    /// The kind is told by the extension; `path` must be a page or style sheet. Error: the file can't be read.
    Result<void> read(const std::string& path);

    /// Reads only the file's bytes, which are valid until the next read.
    Result<std::string_view> readBytes(const std::string& path) { return m_reader.read(path); }
    enum class FilePlaces : std::uint8_t { Unknown, Known };

    /// Reads the addresses of a page whose file is called `name` and holds `bytes`, which must outlive what is read. To know
    /// the places in the file costs time where the page must be decoded.
    void parse(std::string_view bytes, std::string_view name, FilePlaces places = FilePlaces::Unknown);

    [[nodiscard]] const PageReader& page() const { return m_page; }
    /// The page as UTF-8, without a byte-order mark; the places of the references count in it.
    [[nodiscard]] std::string_view text() const { return m_text; }
    [[nodiscard]] bool holdsServerCode() const { return m_holdsServerCode; }
    /// The same text with its server code.
    [[nodiscard]] std::string_view unmaskedText() const { return m_unmasked; }
    [[nodiscard]] const PageEncoding& encoding() const { return m_encoding; }
    /// Where in the file's bytes a place of the text is; only after parse() with FilePlaces::Known.
    [[nodiscard]] std::size_t placeInFile(std::size_t place) const
    {
        return m_encoding.markLength + (m_places.empty() ? place : m_places[place]);
    }

private:
    FileReader m_reader;
    PageReader m_page;
    PageEncoding m_encoding;
    std::string m_decoded;
    std::string m_masked;
    std::string_view m_text;
    std::string_view m_unmasked;
    std::vector<std::uint32_t> m_places; // empty where the text is the bytes
    bool m_holdsServerCode = false;
};

} // namespace luma
