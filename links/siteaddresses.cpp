// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/siteaddresses.h"

#include "base/ascii.h"
#include "base/pathbelow.h"
#include "base/utf8.h"
#include "html/servercode.h"
#include "links/percentencoding.h"

#include <algorithm>

namespace luma {

namespace {

// What masked server code is made of, and the braces of templates.
bool holdsServerCode(std::string_view value)
{
    const auto mayBegin = [](char c) { return c == maskedServerCode || c == '<' || c == '{'; };
    if (std::none_of(value.begin(), value.end(), mayBegin))
        return false;
    if (value.find(maskedServerCode) != std::string_view::npos ||
        value.find("<%") != std::string_view::npos || value.find("<?") != std::string_view::npos)
        return true;
    const std::size_t brace = value.find('{');
    return brace != std::string_view::npos && brace + 1 < value.size() &&
           (value.find("{{", brace) != std::string_view::npos ||
            value.find("{%", brace) != std::string_view::npos);
}

// Whether `path`, the part of an address before its query, is an ordinary relative path: no scheme, no host, no
// backslash, no line end, no encoded dot. The parser must read all others.
bool isPlainPath(std::string_view path)
{
    if (path.starts_with("//"))
        return false;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const char c = path[i];
        if (static_cast<unsigned char>(c) < 0x20 || c == '\\' || c == ':')
            return false;
        if (c == '%' && equalIgnoringAsciiCase(path.substr(i, 3), "%2e"))
            return false;
    }
    return true;
}

// The place that a list of segments names, those from `encodedFrom` on percent-encoded. Empty segments, of slashes that
// follow each other, lead nowhere of their own.
std::string placeOf(const std::vector<std::string_view>& segments, std::size_t encodedFrom)
{
    std::string place;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (segments[i].empty())
            continue;
        if (!place.empty())
            place += '/';
        const bool encoded = i >= encodedFrom && segments[i].find('%') != std::string_view::npos;
        const std::string name = encoded ? percentDecoded(segments[i]) : std::string(segments[i]);
        // No name holds a slash or a NUL: such a segment names nothing.
        place += name.find('/') == std::string::npos && name.find('\0') == std::string::npos
                     ? name
                     : percentEncoded(segments[i], AddressPart::Path);
    }
    return place;
}

template <class Add>
void forEachSegment(std::string_view path, Add add)
{
    for (;;) {
        const std::size_t slash = path.find('/');
        add(path.substr(0, slash));
        if (slash == std::string_view::npos)
            return;
        path.remove_prefix(slash + 1);
    }
}

bool isFolderEnding(std::string_view segment)
{
    return segment.empty() || segment == "." || segment == "..";
}

bool isSameHost(const WebAddress& a, const WebAddress& b)
{
    const auto port = [](const WebAddress& address) {
        return address.port ? int(*address.port) : address.scheme == "https" ? 443 : 80;
    };
    const bool bothDefault = !a.port && !b.port;
    return a.host == b.host && (bothDefault || port(a) == port(b));
}

bool isWeb(const WebAddress& address)
{
    return address.scheme == "http" || address.scheme == "https";
}

} // namespace

SiteAddresses::SiteAddresses(const std::vector<std::string>& ownAddresses)
{
    for (const std::string& text : ownAddresses) {
        std::optional<WebAddress> address = parseAddress(text);
        if (!address || !isWeb(*address))
            continue;
        while (!address->path.empty() && address->path.back().empty())
            address->path.pop_back();
        m_own.push_back(*std::move(address));
    }
    m_isNameKnown = !m_own.empty();
    if (!m_isNameKnown)
        m_own.push_back(*parseAddress("http://site.invalid")); // RFC 2606: no host has this name
    while (!m_isNameKnown && !m_own.front().path.empty())
        m_own.front().path.pop_back();
}

WebAddress SiteAddresses::addressOf(std::string_view page) const
{
    WebAddress address = m_own.front();
    forEachSegment(page, [&address](std::string_view name) {
        address.path.push_back(percentEncoded(name, AddressPart::Component));
    });
    return address;
}

SiteAddresses::Page SiteAddresses::page(std::string_view path, std::string_view base) const
{
    Page page{std::string(path), false, {}};
    if (trimmedAddress(base).empty())
        return page;
    const WebAddress own = addressOf(path);
    // A base that is no address is as if it were not there (HTML standard, "document base URL").
    if (std::optional<WebAddress> address = parseAddress(base, &own); address && !address->hasOpaquePath) {
        page.hasBase = true;
        page.base.push_back(*std::move(address));
    }
    return page;
}

LinkTarget SiteAddresses::resolve(std::string_view value, const Page& page) const
{
    if (holdsServerCode(value))
        return {LinkTarget::Kind::NotJudged, {}, false, false, {}};
    value = trimmedAddress(value);
    const auto endsPath = [](char c) { return c == '?' || c == '#'; };
    const auto pathEnd =
        static_cast<std::size_t>(std::find_if(value.begin(), value.end(), endsPath) - value.begin());
    return !page.hasBase && isPlainPath(value.substr(0, pathEnd)) ? resolvePlain(value, pathEnd, page)
                                                                  : resolveParsed(value, page);
}

LinkTarget SiteAddresses::resolvePlain(std::string_view value, std::size_t pathEnd, const Page& page) const
{
    LinkTarget target;
    target.kind = LinkTarget::Kind::Inside;
    const std::size_t hash = value.find('#', pathEnd);
    if (hash != std::string_view::npos)
        target.fragment = value.substr(hash + 1);
    target.hasQuery = pathEnd < value.size() && value[pathEnd] == '?';
    std::string_view path = value.substr(0, pathEnd);
    if (path.empty()) {
        target.path = page.path;
        return target;
    }
    const std::vector<std::string>& home = m_own.front().path;
    const bool fromRoot = path.front() == '/';
    std::vector<std::string_view> segments(home.begin(), home.end());
    std::size_t encodedFrom = home.size();
    if (fromRoot) {
        segments.clear();
        encodedFrom = 0;
        path.remove_prefix(1);
    } else if (const std::string_view folder = folderPart(page.path); !folder.empty()) {
        forEachSegment(folder, [&segments](std::string_view name) { segments.push_back(name); });
        encodedFrom = segments.size();
    }
    std::string_view last;
    forEachSegment(path, [&](std::string_view segment) {
        last = segment;
        if (segment == ".") {
            return;
        }
        if (segment != "..") {
            segments.push_back(segment);
        } else if (!segments.empty()) {
            segments.pop_back();
            encodedFrom = std::min(encodedFrom, segments.size());
        } else if (!m_isNameKnown) {
            target.kind = LinkTarget::Kind::Outside;
        }
    });
    const bool isBelowHome =
        segments.size() >= home.size() && std::equal(home.begin(), home.end(), segments.begin());
    if (!isBelowHome)
        target.kind = LinkTarget::Kind::Outside;
    if (target.kind != LinkTarget::Kind::Inside)
        return target;
    const auto homeSize = static_cast<std::ptrdiff_t>(home.size());
    segments.erase(segments.begin(), segments.begin() + homeSize);
    target.path = placeOf(segments, encodedFrom - std::min(encodedFrom, home.size()));
    target.isFolderForm = segments.empty() || isFolderEnding(last);
    return target;
}

LinkTarget SiteAddresses::resolveParsed(std::string_view value, const Page& page) const
{
    const WebAddress base = page.hasBase ? page.base.front() : addressOf(page.path);
    const std::optional<WebAddress> address = parseAddress(value, &base);
    LinkTarget target;
    if (!address || !isWeb(*address))
        return target;
    target.fragment = address->fragment.value_or("");
    target.hasQuery = address->query.has_value();
    for (const WebAddress& own : m_own) {
        if (!isSameHost(*address, own))
            continue;
        const bool isBelow = address->path.size() >= own.path.size() &&
                             std::equal(own.path.begin(), own.path.end(), address->path.begin());
        target.kind = isBelow ? LinkTarget::Kind::Inside : LinkTarget::Kind::Outside;
        if (!isBelow)
            continue;
        const std::vector<std::string_view> segments(
            address->path.begin() + static_cast<std::ptrdiff_t>(own.path.size()), address->path.end());
        target.path = placeOf(segments, 0);
        target.isFolderForm = segments.empty() || segments.back().empty();
        return target;
    }
    return target;
}

} // namespace luma
