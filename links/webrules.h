// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// How the reports read links: as a browser does, or letter by letter (linkrules.h).
enum class LinkRules : std::uint8_t { Browser, Letter };

/// What a site's links mean to a browser, besides what its files say.
struct WebRules
{
    /// Where the site's folder is on the web (see SiteAddresses).
    std::vector<std::string> webAddresses;
    /// The pages that a folder's address means, the first that is there.
    std::vector<std::string> indexNames = {"index.html", "index.htm", "index.xhtml", "index.php",
                                           "default.htm"};
    /// Whether "about" leads to about.html, as many servers are set up.
    bool extensionsMayBeLeftOut = false;
    /// Whether the place that "#name" means must be in the page.
    bool fragmentsAreChecked = true;

    bool operator==(const WebRules&) const = default;
};

/// What a file is to a browser, by its extension, letter case ignored.
enum class WebFileKind : std::uint8_t {
    HtmlPage,   // html, htm, shtml, php
    XmlPage,    // xhtml, xht, xml, svg
    StyleSheet, // css
    Other
};

WebFileKind webFileKind(std::string_view name);

/// Whether a file of this name is a script: js, mjs, cjs.
bool isScript(std::string_view name);

/// Whether a file with this name may mention others as plain text: scripts, data, manifests, feeds, texts.
bool mentionsFiles(std::string_view name);

} // namespace luma
