// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/dottednames.h"
#include "links/linkindex.h"

#include <string_view>
#include <unordered_map>
#include <vector>

namespace luma {

/// The engine for url(...) in style elements and style sheets: marks the files that a reference counts for in
/// the index, which must outlive it. LinkIndex has an example.
///
/// Names are used as regular expressions there. The engine knows names whose only special character is the
/// dot (isPlainPattern); LinkedFile answers for all others. One thread, but for in().
class UrlReferences final
{
public:
    using Id = LinkIndex::Id;

    explicit UrlReferences(LinkIndex& index) : m_index(index) {}

    /// What follows each "url(" in a text, as far as the functions below need it. Any thread.
    [[nodiscard]] std::vector<std::string_view> in(std::string_view text) const;

    /// Marks the files that a reference in a style element counts for, in a page in `folder`.
    void markFromPage(std::string_view reference, Id folder);
    /// Marks the files that a reference in a style sheet counts for, where only the file name matters.
    void markFromSheet(std::string_view reference);

    /// Whether `name` is UTF-8 without a character special to regular expressions other than the dot.
    static bool isPlainPattern(std::string_view name);

private:
    struct FolderNames
    {
        DottedNames patterns; // numbers are indexes into LinkIndex::patternsIn
        DottedNames folders;  // numbers are Ids
    };

    const FolderNames& namesIn(Id folder);
    void markUp(const LinkIndex::Start& start, std::u32string_view text, std::size_t position);
    void markDown(const LinkIndex::Start& start, Id folder, std::u32string_view text, std::size_t position);
    void addFileNames();

    LinkIndex& m_index;
    std::unordered_map<Id, FolderNames> m_folderNames; // filled on demand
    DottedNames m_fileNames;                           // filled on demand; numbers are indexes into:
    std::vector<std::vector<Id>> m_filesByName;
};

} // namespace luma
