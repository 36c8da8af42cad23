// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace luma {

/// What a page's file is written in. HTML is all that does not call itself XML, by a declaration or by the
/// file's extension; XHTML is XML whose root element is `html`.
struct PageLanguage
{
    enum class Kind { Html, Xhtml, OtherXml };

    Kind kind = Kind::Html;
    /// Other XML's root element, UTF-8.
    std::string rootElement;
};

/// The language of the text read from `file`. XML that is not well-formed counts as XHTML: the page's own
/// parser reads what can be read of it.
PageLanguage pageLanguage(const std::filesystem::path& file, std::string_view text);

} // namespace luma
