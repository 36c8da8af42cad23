// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/webaddress.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Where an address on a page of the site leads, as a browser takes it.
struct LinkTarget
{
    enum class Kind : std::uint8_t {
        External,  // another host, or no address of a page at all: mailto:, javascript:, data:
        NotJudged, // holds server code or a template's braces: only the server knows
        Inside,    // a place of the site, whether or not something is there
        Outside    // above the site's folder, or beside it on its own host
    };

    Kind kind = Kind::External;
    /// For Inside: the place relative to the site's folder, the bytes of names, without slashes at its ends; empty
    /// for the site's folder itself.
    std::string path;
    /// Written with a slash at its end, or as nothing but dots.
    bool isFolderForm = false;
    bool hasQuery = false;
    /// As written, without "#"; empty without one.
    std::string fragment;
};

/// Knows the site's own web addresses and says where an address of one of its pages leads (URL standard). An address
/// that begins with "/" starts at the site's root. Nothing is looked up on the disk. Unchanging once made; any thread.
class SiteAddresses final
{
public:
    /// Where the addresses of one page start from.
    struct Page
    {
        std::string path;             // relative to the site's folder
        bool hasBase = false;         // `address` is that of the page's base element
        std::vector<WebAddress> base; // one; none where it can't be read as an address
    };

    /// `ownAddresses`: where the site's folder is on the web, each http or https ("https://example.org/docs/"); what is
    /// no such address is left out. Pages count as being at the first one; without any, on a server of unknown name.
    explicit SiteAddresses(const std::vector<std::string>& ownAddresses = {});

    /// Whether the site's own address is known.
    [[nodiscard]] bool isNameKnown() const { return m_isNameKnown; }
    /// The site's own addresses, or a stand-in; their paths have no empty segment at the end. Never empty.
    [[nodiscard]] const std::vector<WebAddress>& own() const { return m_own; }

    /// `base`: the address of the page's base element, decoded; empty without one.
    [[nodiscard]] Page page(std::string_view path, std::string_view base = {}) const;

    /// Where the address `value` leads on `page`; decoded UTF-8, with blanks and all.
    [[nodiscard]] LinkTarget resolve(std::string_view value, const Page& page) const;

private:
    [[nodiscard]] LinkTarget resolvePlain(std::string_view value, std::size_t pathEnd,
                                          const Page& page) const;
    [[nodiscard]] LinkTarget resolveParsed(std::string_view value, const Page& page) const;
    [[nodiscard]] WebAddress addressOf(std::string_view page) const;

    std::vector<WebAddress> m_own; // without the empty segment at the end of their paths
    bool m_isNameKnown = false;    // false: the one address is a stand-in
};

} // namespace luma
