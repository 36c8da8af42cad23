// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/browserchecker.h"
#include "links/unlinkeditems.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// The reports on a site's links as a browser reads them. Each calls its sink on the calling thread, in the byte order
/// of the subpaths, and gives false when it was stopped. Error: the site's folder can't be read.
namespace luma {

using WebPageSink = std::function<void(const WebPage& page)>;

/// The links of every page and style sheet of the site; with FindingsKept::Missing only missing ones, and only pages
/// that have one or can't be read. Last come the folders that can't be read.
Result<bool> checkWebLinks(const std::filesystem::path& site, const WebRules& rules, FindingsKept kept,
                           const WebPageSink& page, const StillWanted& stillWanted = {});

/// Each folder of the site that can't be read as a page that can't.
void tellUnreadableFolders(const SiteTree& tree, const WebPageSink& page);

/// The links of one page or style sheet of the site. Without a site the whole disk is taken for one, as a browser does
/// that shows the file itself; "#name" is then not checked. Error: the site or the page can't be
/// read, or the page is no page, or not in the site.
Result<WebPage> checkWebPage(const std::filesystem::path& site, const std::filesystem::path& page,
                             const WebRules& rules);

/// The page itself and what it takes to show it, as paths relative to the site's folder in byte order: what it and its
/// style sheets embed, and what it links to that is no page. Error: the site can't be read, or the page is not in it.
Result<std::vector<std::string>> findNeededFiles(const std::filesystem::path& site,
                                                 const std::filesystem::path& page, const WebRules& rules);

/// Every file of the site that refers to `target`, a file or folder of it: pages and style sheets with the links that
/// lead there, and scripts, data and texts that hold its name, which have none. Error also: the target is not in the
/// site.
Result<bool> findWebLinksTo(const std::filesystem::path& site, const std::filesystem::path& target,
                            const WebRules& rules, const WebPageSink& page,
                            const StillWanted& stillWanted = {});

/// Every file of the site that no other file refers to: no page or style sheet by a link, and no script, data or text
/// by its name. Hidden files are left out, and at the site's top what servers, browsers and robots ask for by
/// themselves (index pages, robots.txt, favicon.ico). `excludedFolders` as for findUnlinkedItems().
Result<bool> findWebUnlinked(const std::filesystem::path& site, const WebRules& rules,
                             std::string_view excludedFolders, const UnlinkedItemsCallbacks& callbacks);

} // namespace luma
