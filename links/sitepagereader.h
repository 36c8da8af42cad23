// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "base/result.h"
#include "links/decodedfile.h"
#include "links/pagereader.h"

#include <string>
#include <string_view>

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
    using FilePlaces = DecodedFile::Places;

    /// Reads the addresses of a page whose file is called `name` and holds `bytes`, which must outlive what is read. To know
    /// the places in the file costs time where the page must be decoded.
    void parse(std::string_view bytes, std::string_view name, FilePlaces places = FilePlaces::Unknown);

    [[nodiscard]] const PageReader& page() const { return m_page; }
    /// The page as UTF-8, without a byte-order mark; the places of the references count in it.
    [[nodiscard]] std::string_view text() const { return m_text; }
    [[nodiscard]] bool holdsServerCode() const { return m_holdsServerCode; }
    /// The same text with its server code.
    [[nodiscard]] std::string_view unmaskedText() const { return m_unmasked; }
    [[nodiscard]] const PageEncoding& encoding() const { return m_file.encoding(); }
    /// Where in the file's bytes a place of the text is; only after parse() with FilePlaces::Known.
    [[nodiscard]] std::size_t placeInFile(std::size_t place) const { return m_file.placeInFile(place); }

private:
    FileReader m_reader;
    PageReader m_page;
    DecodedFile m_file;
    std::string m_masked;
    std::string_view m_text;
    std::string_view m_unmasked;
    bool m_holdsServerCode = false;
};

} // namespace luma
