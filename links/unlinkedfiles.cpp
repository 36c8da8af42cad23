// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/unlinkedfiles.h"

#include "base/ascii.h"
#include "links/excludedfolders.h"
#include "links/mentionednames.h"
#include "links/namedfiles.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace luma {

namespace {

using Id = SiteTree::Id;

// What servers, browsers and robots ask for at the top of a site by themselves.
constexpr auto askedForNames =
    std::to_array<std::string_view>({"robots.txt", "humans.txt", "security.txt", "ads.txt", "app-ads.txt",
                                     "404.html", "browserconfig.xml", "cname"});
constexpr auto askedForBeginnings = std::to_array<std::string_view>({"favicon.", "apple-touch-icon"});

bool isHidden(std::string_view subpath)
{
    return subpath.starts_with('.') || subpath.find("/.") != std::string_view::npos;
}

bool isAskedFor(std::string_view subpath, const WebRules& rules)
{
    if (subpath.find('/') != std::string_view::npos)
        return false;
    const auto begins = [subpath](std::string_view text) {
        return startsWithIgnoringAsciiCase(subpath, text);
    };
    const bool isIndex =
        std::find(rules.indexNames.begin(), rules.indexNames.end(), subpath) != rules.indexNames.end();
    return isIndex || isOneOf(subpath, askedForNames) ||
           std::any_of(askedForBeginnings.begin(), askedForBeginnings.end(), begins) ||
           (begins("sitemap") && (subpath.ends_with(".xml") || subpath.ends_with(".xml.gz")));
}

} // namespace

UnlinkedFiles::UnlinkedFiles(const SiteTree& tree, const SitePaths& paths, const WebRules& rules,
                             std::string_view excludedFolders, const UnlinkedItemsCallbacks& callbacks)
    : m_tree(tree),
      m_paths(paths),
      m_callbacks(callbacks),
      m_linked(std::make_unique<std::atomic<bool>[]>(tree.size()))
{
    const ExcludedFolders excluded(excludedFolders);
    for (const Id file : tree.files()) {
        const std::string subpath = tree.subpath(file);
        if (!isHidden(subpath) && !isAskedFor(subpath, rules) && !excluded.contain(subpath))
            m_candidates.push_back(file);
    }
}

bool UnlinkedFiles::finish()
{
    return searchTexts() && deliverRows();
}

// Looks in each script, data file and text for the names of all files that are still unlinked.
bool UnlinkedFiles::searchTexts()
{
    for (const Id file : m_candidates) {
        if (!m_mentioned.empty() && m_mentioned.contains(mentionedName(m_tree.name(file))))
            setLinked(file);
    }
    markTargetsOfLinks();
    std::vector<Id> wanted;
    std::copy_if(m_candidates.begin(), m_candidates.end(), std::back_inserter(wanted),
                 [this](Id file) { return !m_linked[file]; });
    std::vector<Id> texts;
    std::copy_if(m_tree.files().begin(), m_tree.files().end(), std::back_inserter(texts),
                 [this](Id file) { return mentionsFiles(m_tree.name(file)); });
    return findNamedFiles(
        m_tree, wanted, texts, [](std::string_view) { return true; },
        [this](Id file, Id text) {
            if (file != text)
                setLinked(file);
        },
        m_callbacks);
}

// A file is in use when a symbolic link to it is.
void UnlinkedFiles::markTargetsOfLinks()
{
    const std::filesystem::path root = m_tree.rootPath();
    std::error_code error;
    const std::filesystem::path realRoot = std::filesystem::canonical(root, error);
    for (const Id file : m_tree.files()) {
        if (m_tree.type(file) != SiteTree::Type::LinkToFile || !m_linked[file])
            continue;
        const auto real = std::filesystem::canonical(m_tree.path(file), error);
        const Id target = error ? SiteTree::none : m_paths.find(real.lexically_relative(realRoot).native());
        if (target != SiteTree::none)
            m_linked[target] = true;
    }
}

bool UnlinkedFiles::deliverRows()
{
    for (const Id file : m_candidates) {
        if (!isWanted(m_callbacks.stillWanted))
            return false;
        if (!m_linked[file] && m_callbacks.row)
            m_callbacks.row(m_tree.subpath(file));
    }
    return true;
}

} // namespace luma
