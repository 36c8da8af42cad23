// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/mentionednames.h"

#include "base/ascii.h"
#include "html/servercode.h"
#include "links/percentencoding.h"

#include <algorithm>
#include <array>

namespace luma {

namespace {

constexpr auto extensions = std::to_array<std::string_view>(
    {"html", "htm", "xhtml", "shtml", "php",  "css",  "js",    "mjs",  "json", "map", "wasm", "xml",  "rss",
     "atom", "svg", "png",   "jpg",   "jpeg", "gif",  "webp",  "avif", "bmp",  "ico", "tif",  "tiff", "pdf",
     "txt",  "md",  "csv",   "zip",   "gz",   "mp3",  "mp4",   "m4a",  "webm", "ogg", "ogv",  "oga",  "wav",
     "mov",  "vtt", "srt",   "woff",  "ttf",  "otf",  "eot",   "doc",  "docx", "xls", "xlsx", "ppt",  "pptx",
     "odt",  "ods", "epub",  "swf",   "glb",  "gltf", "woff2", "jar",  "class"});

constexpr std::size_t longestName = 255;

/// Collects the names in stretches of code.
class Names final
{
public:
    explicit Names(std::string_view ownName) : m_own(mentionedName(ownName)) {}

    void addFrom(std::string_view code)
    {
        forEachPiece(code, "\"'`/\\<>\r\n", [this](std::string_view piece) {
            add(piece);
            forEachPiece(piece, " \t,;:()[]{}=?#&|*", [this](std::string_view name) { add(name); });
        });
    }

    std::vector<std::uint64_t> take()
    {
        std::sort(m_names.begin(), m_names.end());
        m_names.erase(std::unique(m_names.begin(), m_names.end()), m_names.end());
        return std::move(m_names);
    }

private:
    template <class Take>
    static void forEachPiece(std::string_view text, std::string_view ends, Take take)
    {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find_first_of(ends), text.size());
            take(text.substr(0, end));
            text.remove_prefix(std::min(end + 1, text.size()));
        }
    }

    void add(std::string_view name)
    {
        const std::size_t dot = name.rfind('.');
        if (dot == std::string_view::npos || name.size() > 3 * longestName ||
            !isOneOf(name.substr(dot + 1), extensions))
            return;
        const std::uint64_t found = mentionedName(percentDecoded(name));
        if (found != m_own)
            m_names.push_back(found);
    }

    std::uint64_t m_own;
    std::vector<std::uint64_t> m_names;
};

} // namespace

std::vector<std::uint64_t> mentionedNames(const SitePageReader& reader, std::string_view ownName)
{
    Names names(ownName);
    for (const std::string_view code : reader.page().code())
        names.addFrom(code);
    if (reader.holdsServerCode()) {
        const std::string_view text = reader.unmaskedText();
        for (const ServerCode& code : serverCodeIn(text))
            names.addFrom(text.substr(code.begin, code.end - code.begin));
    }
    return names.take();
}

} // namespace luma
