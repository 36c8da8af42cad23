// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/browserreports.h"

#include "base/ascii.h"
#include "base/orderedwork.h"
#include "links/excludedfolders.h"
#include "links/namedfiles.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <iterator>
#include <memory>
#include <vector>

namespace luma {

namespace {

using Id = SiteTree::Id;

// What servers, browsers and robots ask for at the top of a site by themselves.
constexpr auto askedForNames = std::to_array<std::string_view>(
    {"robots.txt", "humans.txt", "security.txt", "404.html", "browserconfig.xml"});
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

// The report, step by step.
class WebUnlinked final
{
public:
    WebUnlinked(const SiteTree& tree, const WebRules& rules, const UnlinkedItemsCallbacks& callbacks)
        : m_tree(tree),
          m_rules(rules),
          m_callbacks(callbacks),
          m_addresses(rules.webAddresses),
          m_paths(tree, rules),
          m_linked(std::make_unique<std::atomic<bool>[]>(tree.size()))
    {}

    // False when the report was stopped.
    bool run(const ExcludedFolders& excluded)
    {
        for (const Id file : m_tree.files()) {
            const std::string subpath = m_tree.subpath(file);
            if (!isHidden(subpath) && !isAskedFor(subpath, m_rules) && !excluded.contain(subpath))
                m_candidates.push_back(file);
        }
        return readPages() && searchTexts() && deliverRows();
    }

private:
    bool readPages()
    {
        std::vector<Id> pages;
        for (const Id file : m_tree.files()) {
            if (webFileKind(m_tree.name(file)) != WebFileKind::Other)
                pages.push_back(file);
        }
        using Work = OrderedWork<bool>;
        std::vector<SitePageReader> readers(Work::workerCount());
        return Work(pages.size(), m_callbacks.stillWanted)
            .run([&](std::size_t i, std::size_t worker) { return readPage(pages[i], readers[worker]); },
                 [&](std::size_t i, bool) { examining(pages[i]); });
    }

    bool readPage(Id id, SitePageReader& reader)
    {
        if (!reader.read(m_tree.path(id)))
            return false;
        const SiteAddresses::Page page = m_addresses.page(m_tree.subpath(id), reader.page().base());
        for (const LinkReference& reference : reader.page().references()) {
            if (reference.place == LinkPlace::UseMap)
                continue;
            const LinkTarget target = m_addresses.resolve(reference.value, page);
            if (target.kind != LinkTarget::Kind::Inside)
                continue;
            // A page is not in use because it refers to itself.
            const Id file = m_paths.at(target).file;
            if (file != SiteTree::none && file != id)
                m_linked[file].store(true, std::memory_order_relaxed);
        }
        return true;
    }

    // Looks in each script, data file and text for the names of all files that are still unlinked.
    bool searchTexts()
    {
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
                    m_linked[file].store(true, std::memory_order_relaxed);
            },
            m_callbacks);
    }

    // A file is in use when a symbolic link to it is.
    void markTargetsOfLinks()
    {
        const std::filesystem::path root = m_tree.rootPath();
        std::error_code error;
        const std::filesystem::path realRoot = std::filesystem::canonical(root, error);
        for (const Id file : m_tree.files()) {
            if (m_tree.type(file) != SiteTree::Type::LinkToFile || !m_linked[file])
                continue;
            const auto real = std::filesystem::canonical(m_tree.path(file), error);
            const Id target =
                error ? SiteTree::none : m_paths.find(real.lexically_relative(realRoot).native());
            if (target != SiteTree::none)
                m_linked[target] = true;
        }
    }

    bool deliverRows()
    {
        for (const Id file : m_candidates) {
            if (!isWanted(m_callbacks.stillWanted))
                return false;
            if (!m_linked[file] && m_callbacks.row)
                m_callbacks.row(m_tree.subpath(file));
        }
        return true;
    }

    void examining(Id file) const
    {
        if (m_callbacks.examining)
            m_callbacks.examining(m_tree.subpath(file));
    }

    const SiteTree& m_tree;
    const WebRules& m_rules;
    const UnlinkedItemsCallbacks& m_callbacks;
    SiteAddresses m_addresses;
    SitePaths m_paths;
    std::unique_ptr<std::atomic<bool>[]> m_linked; // by Id
    std::vector<Id> m_candidates;                  // files that the report may list
};

} // namespace

Result<bool> findWebUnlinked(const std::filesystem::path& site, const WebRules& rules,
                             std::string_view excludedFolders, const UnlinkedItemsCallbacks& callbacks)
{
    const auto tree = SiteTree::read(site, callbacks.stillWanted);
    if (!tree)
        return tree.error().isStopped() ? Result<bool>(false) : Result<bool>(tree.error());
    return WebUnlinked(*tree, rules, callbacks).run(ExcludedFolders(excludedFolders));
}

} // namespace luma
