// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/encoding.h"
#include "base/result.h"
#include "links/linksupdate.h"
#include "page/pagefile.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The file of a linked style sheet, read and written in its own encoding (byte-order mark, @charset, else UTF-8 or
/// windows-1252), which notices changes by other programs. Main thread; may block on a mount.
class StyleSheetFile final
{
public:
    StyleSheetFile() = default;
    explicit StyleSheetFile(const std::filesystem::path& path) : m_file(path) {}

    [[nodiscard]] const std::filesystem::path& path() const { return m_file.path(); }

    /// The sheet's text, UTF-8 without a byte-order mark. Fails as PageFile::read() does, and
    /// where bytes are no characters.
    Result<std::string> read();

    /// Writes the text with the mark and in the encoding that were read, or the one that the text declares now. A
    /// character that the encoding lacks becomes an escape ("\20AC "). On an error the file stays unchanged.
    Result<void> write(std::string_view text);

    /// Whether the file differs from what was last read or written; false where there is none.
    [[nodiscard]] bool changedOnDisk() const { return m_file.changedOnDisk(); }

    /// The file is at `path` now. If the job that moved it changed its links, that is no change by another program.
    void follow(const std::filesystem::path& path, const std::vector<LinksUpdate::File>& rewritten);

private:
    [[nodiscard]] Encoding encodingWanted(std::string_view text) const;

    PageFile m_file;
    Encoding m_encoding;
    bool m_isDeclared = false; // the encoding, by @charset
    bool m_hasMark = false;
};

} // namespace luma
