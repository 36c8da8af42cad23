// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/unlinkeditems.h"

#include "base/ascii.h"
#include "base/filereader.h"
#include "base/orderedwork.h"
#include "base/utf8.h"
#include "html/characterreferences.h"
#include "links/attributelinks.h"
#include "links/bytehash.h"
#include "links/excludedfolders.h"
#include "links/linkedfile.h"
#include "links/namedfiles.h"
#include "links/parsedpage.h"
#include "links/urlreferences.h"

#include <algorithm>
#include <iterator>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Id = SiteTree::Id;

// What the scan of one file leaves for the calling thread.
struct FileReferences
{
    bool hasStyle = false;
    std::vector<std::string> references; // url(...)
};

// Reads pages and style sheets. Each thread has its own.
class ReferenceReader final
{
public:
    ReferenceReader(const SiteTree& tree, AttributeLinks& links, const UrlReferences& references)
        : m_tree(&tree), m_links(&links), m_urlReferences(&references)
    {}

    FileReferences read(Id file)
    {
        const FileKind kind = m_tree->kind(file);
        if (kind != FileKind::Page && kind != FileKind::StyleSheet)
            return {};
        const auto text = m_reader.read(m_tree->path(file));
        if (!text || !isValidUtf8(*text))
            return {};
        if (kind == FileKind::Page)
            return readPage(*text, m_tree->parent(file));
        FileReferences sheet;
        addReferences(sheet, *text, SiteTree::none);
        return sheet;
    }

private:
    FileReferences readPage(std::string_view source, Id folder)
    {
        FileReferences page;
        HtmlScanner scanner(source);
        HtmlToken token;
        while (scanner.next(token)) {
            if (token.kind != HtmlTokenKind::StartTag)
                continue;
            page.hasStyle = page.hasStyle || isStyleTag(token);
            forEachLinkOf(token, [&](std::size_t, const HtmlAttribute& attribute) {
                if (needsDecoding(attribute.value))
                    m_links->mark(decodeCharacters(attribute.value, ReferenceContext::AttributeValue), folder,
                                  m_seenValues);
                else
                    m_links->mark(attribute.value, folder, m_seenValues);
            });
        }
        if (page.hasStyle) {
            for (const std::string_view style : styleContents(source))
                addReferences(page, style, folder);
        }
        return page;
    }

    void addReferences(FileReferences& file, std::string_view text, Id folder)
    {
        for (const std::string_view reference : m_urlReferences->in(text)) {
            if (m_seenReferences.insert(hashBytes(reference, folder)))
                file.references.emplace_back(reference);
        }
    }

    const SiteTree* m_tree;
    AttributeLinks* m_links;
    const UrlReferences* m_urlReferences;
    SeenHashes m_seenValues;
    SeenHashes m_seenReferences;
    FileReader m_reader;
};

// The report, step by step.
class UnlinkedItems final
{
public:
    UnlinkedItems(const SiteTree& tree, const UnlinkedItemsCallbacks& callbacks)
        : m_tree(tree), m_callbacks(callbacks), m_index(tree), m_links(m_index), m_urlReferences(m_index)
    {}

    // Each step is false when the report was stopped.
    bool run(const ExcludedFolders& excluded)
    {
        for (const Id file : m_tree.files()) {
            if (!excluded.contain(m_tree.subpath(file)))
                m_candidates.push_back(file);
        }
        return readPagesAndSheets() && searchTexts() && deliverRows();
    }

private:
    bool readPagesAndSheets()
    {
        using Work = OrderedWork<FileReferences>;
        const std::vector<Id>& files = m_tree.files();
        std::vector<ReferenceReader> readers;
        for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
            readers.emplace_back(m_tree, m_links, m_urlReferences);
        return Work(files.size(), m_callbacks.stillWanted)
            .run([&](std::size_t i, std::size_t worker) { return readers[worker].read(files[i]); },
                 [&](std::size_t i, const FileReferences& found) { takeReferences(files[i], found); });
    }

    void takeReferences(Id file, const FileReferences& found)
    {
        examining(file);
        if (found.hasStyle || m_tree.kind(file) == FileKind::StyleSheet)
            m_styled.push_back(file);
        for (const std::string& reference : found.references) {
            if (m_tree.kind(file) == FileKind::Page)
                m_urlReferences.markFromPage(reference, m_tree.parent(file));
            else
                m_urlReferences.markFromSheet(reference);
        }
    }

    // Looks in each plain-text file for the names of all files that are still unlinked.
    bool searchTexts()
    {
        std::vector<Id> wanted;
        std::copy_if(m_candidates.begin(), m_candidates.end(), std::back_inserter(wanted),
                     [this](Id file) { return !m_index.isLinked(file); });
        std::vector<Id> texts;
        std::copy_if(m_tree.files().begin(), m_tree.files().end(), std::back_inserter(texts),
                     [this](Id file) { return m_tree.kind(file) == FileKind::PlainText; });
        return findNamedFiles(
            m_tree, wanted, texts, isValidUtf8, [this](Id file, Id) { m_index.setLinked(file); },
            m_callbacks);
    }

    bool deliverRows()
    {
        for (const Id file : m_candidates) {
            if (!m_index.isLinked(file) && !UrlReferences::isPlainPattern(m_tree.subpath(file)))
                searchStylesFor(file);
            if (!isWanted(m_callbacks.stillWanted))
                return false;
            if (!m_index.isLinked(file) && m_callbacks.row)
                m_callbacks.row(m_tree.subpath(file));
        }
        return true;
    }

    // A path that is a real pattern may match anywhere in a style element or style sheet.
    void searchStylesFor(Id file)
    {
        examining(file);
        LinkedFile target(m_tree.path(file));
        for (const Id styled : m_styled) {
            if (!isWanted(m_callbacks.stillWanted))
                return;
            if (target.isLinkedFrom(m_tree.path(styled))) {
                m_index.setLinked(file);
                return;
            }
        }
    }

    void examining(Id file) const
    {
        if (m_callbacks.examining)
            m_callbacks.examining(m_tree.subpath(file));
    }

    const SiteTree& m_tree;
    const UnlinkedItemsCallbacks& m_callbacks;
    LinkIndex m_index;
    AttributeLinks m_links;
    UrlReferences m_urlReferences;
    std::vector<Id> m_candidates; // files that the report may list
    std::vector<Id> m_styled;     // style sheets, and pages with a style element
};

} // namespace

Result<bool> findUnlinkedItems(const fs::path& site, std::string_view excludedFolders,
                               const UnlinkedItemsCallbacks& callbacks)
{
    const auto tree = SiteTree::read(site, callbacks.stillWanted);
    if (!tree)
        return tree.error().isStopped() ? Result<bool>(false) : Result<bool>(tree.error());
    return UnlinkedItems(*tree, callbacks).run(ExcludedFolders(excludedFolders));
}

} // namespace luma
