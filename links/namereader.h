// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/siteaddresses.h"
#include "links/sitepagereader.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A place of a page or style sheet that holds the name of a class or an id. Of the page in a srcdoc attribute only classes
/// count: its ids are its own.
struct NameUse
{
    enum class Kind : std::uint8_t {
        Rule,      // in a selector
        Element,   // an element has it
        Reference, // an attribute names an id of its page: for, headers, aria-labelledby
        Fragment   // a link leads to an id
    };
    Kind kind = Kind::Rule;
    bool isId = false;
    bool isCss = false; // escapes are those of style sheets
    std::string name;
    std::size_t begin = 0; // bytes of the file's text
    std::size_t end = 0;
    std::string target; // of a fragment, the subpath that its link leads to
};

/// Reads the classes and ids of one page, style sheet or script after another. What it gives is valid until the next read.
/// Each thread has one of its own; `addresses` outlives it.
class NameReader final
{
public:
    explicit NameReader(const SiteAddresses& addresses) : m_addresses(&addresses) {}

    /// Reads the file's bytes, which are valid until the next read.
    Result<std::string_view> readBytes(const std::string& path) { return m_reader.readBytes(path); }
    /// Reads the names of the file that is at `subpath` and holds `bytes`, which must outlive what is read.
    void parse(std::string_view bytes, const std::string& subpath);

    /// In the order of the text, but fragments last.
    [[nodiscard]] const std::vector<NameUse>& uses() const { return m_uses; }
    /// The words of scripts, in which names may be.
    [[nodiscard]] const std::set<std::string, std::less<>>& words() const { return m_words; }
    [[nodiscard]] const SitePageReader& file() const { return m_reader; }

private:
    void readSheet(std::size_t begin, std::size_t end);
    void readTags(bool isXml);
    void readAttribute(const HtmlAttribute& attribute);
    void readFrame(const HtmlAttribute& attribute);
    void readTokens(const HtmlAttribute& attribute, NameUse::Kind kind, bool isId);
    void add(NameUse::Kind kind, bool isId, std::string_view raw, std::size_t from, std::size_t to);
    void readFragments(const std::string& subpath);
    void readWords(std::string_view script);

    const SiteAddresses* m_addresses;
    SitePageReader m_reader;
    std::string_view m_text; // what is being read: the file's, or that of a frame in it
    bool m_isFrame = false;
    std::vector<NameUse> m_uses;
    std::set<std::string, std::less<>> m_words;
};

} // namespace luma
