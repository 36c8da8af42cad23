// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/pageencoding.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace luma::html {

/// What a page is written in. All that does not call itself XML, by a declaration or the file's extension, is HTML; XHTML
/// is XML whose root element is `html`.
struct PageLanguage
{
    enum class Kind { Html, Xhtml, OtherXml };
    Kind kind = Kind::Html;
    std::string rootElement; // of other XML

    [[nodiscard]] MarkupLanguage markup() const
    {
        return kind == Kind::Html ? MarkupLanguage::Html : MarkupLanguage::Xml;
    }
};

/// The language of a file with these bytes. XML that is not well-formed counts as XHTML: the parser reads what it can of
/// it. Any thread.
PageLanguage pageLanguage(const std::filesystem::path& file, std::string_view bytes);

/// Whether an XML parser reads the bytes without an error. External entities are not looked up. Any thread.
bool isWellFormedXml(std::string_view bytes);

} // namespace luma::html
