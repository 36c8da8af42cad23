// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/encoding.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace luma {

/// The encoding that a page or sheet is read in, and where that is said.
struct PageEncoding
{
    enum class Source : std::uint8_t {
        ByteOrderMark,
        Declared, // by a meta element, an XML declaration, or @charset
        Guessed   // UTF-8 where the bytes are UTF-8, else windows-1252
    };

    Encoding encoding;
    Source source = Source::Guessed;
    std::size_t markLength = 0; // of the byte-order mark
};

enum class MarkupLanguage : std::uint8_t { Html, Xml, Css };

/// How `bytes` are read: byte-order mark, then the declared encoding (HTML standard, "prescan a byte stream to determine
/// its encoding", within the first 1,024 bytes; XML 1.0, 4.3.3; CSS Syntax 3, 3.2), then UTF-8 where the bytes are
/// UTF-8, then windows-1252. Any thread.
PageEncoding encodingOf(std::string_view bytes, MarkupLanguage language);

} // namespace luma
