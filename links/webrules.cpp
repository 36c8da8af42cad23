// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/webrules.h"

#include "base/ascii.h"

#include <array>

namespace luma {

namespace {

constexpr auto htmlExtensions = std::to_array<std::string_view>({"html", "htm", "shtml", "php"});
constexpr auto xmlExtensions = std::to_array<std::string_view>({"xhtml", "xht", "xml", "svg"});
constexpr auto scriptExtensions = std::to_array<std::string_view>({"js", "mjs", "cjs"});
constexpr auto textExtensions =
    std::to_array<std::string_view>({"js", "mjs", "json", "webmanifest", "txt", "xml", "rss", "atom", "php"});

std::string_view extensionOf(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

} // namespace

WebFileKind webFileKind(std::string_view name)
{
    const std::string_view extension = extensionOf(name);
    if (isOneOf(extension, htmlExtensions))
        return WebFileKind::HtmlPage;
    if (isOneOf(extension, xmlExtensions))
        return WebFileKind::XmlPage;
    return equalIgnoringAsciiCase(extension, "css") ? WebFileKind::StyleSheet : WebFileKind::Other;
}

bool isScript(std::string_view name)
{
    return isOneOf(extensionOf(name), scriptExtensions);
}

bool mentionsFiles(std::string_view name)
{
    return isOneOf(extensionOf(name), textExtensions);
}

} // namespace luma
