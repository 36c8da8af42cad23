// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "base/result.h"
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

    [[nodiscard]] const PageReader& page() const { return m_page; }
    /// The page as UTF-8, without a byte-order mark; the places of the references count in it.
    [[nodiscard]] std::string_view text() const { return m_text; }
    [[nodiscard]] bool holdsServerCode() const { return m_holdsServerCode; }

private:
    FileReader m_reader;
    PageReader m_page;
    std::string m_decoded;
    std::string m_masked;
    std::string_view m_text;
    bool m_holdsServerCode = false;
};

} // namespace luma
