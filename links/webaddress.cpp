// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/webaddress.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "links/percentencoding.h"
#include "links/webhost.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace luma {

namespace {

struct SpecialScheme
{
    std::string_view name;
    std::uint16_t port; // 0: none
};

constexpr auto specialSchemes = std::to_array<SpecialScheme>(
    {{"http", 80}, {"https", 443}, {"file", 0}, {"ftp", 21}, {"ws", 80}, {"wss", 443}});

const SpecialScheme* specialScheme(std::string_view scheme)
{
    const auto found =
        std::find_if(specialSchemes.begin(), specialSchemes.end(),
                     [scheme](const SpecialScheme& special) { return special.name == scheme; });
    return found == specialSchemes.end() ? nullptr : found;
}

// "C:" or "C|": a drive of another system.
bool isDriveLetter(std::string_view text)
{
    return text.size() == 2 && isAsciiLetter(text[0]) && (text[1] == ':' || text[1] == '|');
}

bool startsWithDriveLetter(std::string_view text)
{
    constexpr std::string_view ends = "/\\?#";
    return text.size() >= 2 && isDriveLetter(text.substr(0, 2)) &&
           (text.size() == 2 || ends.find(text[2]) != std::string_view::npos);
}

bool isNormalDriveLetter(std::string_view text)
{
    return isDriveLetter(text) && text[1] == ':';
}

bool isSingleDot(std::string_view segment)
{
    return segment == "." || equalIgnoringAsciiCase(segment, "%2e");
}

bool isDoubleDot(std::string_view segment)
{
    constexpr auto spellings = std::to_array<std::string_view>({"..", ".%2e", "%2e.", "%2e%2e"});
    return std::any_of(spellings.begin(), spellings.end(), [segment](std::string_view spelling) {
        return equalIgnoringAsciiCase(segment, spelling);
    });
}

/// Reads one address; each step takes its part off the front of what is left.
class AddressReader final
{
public:
    AddressReader(std::string_view text, const WebAddress* base) : m_rest(text), m_base(base) {}

    std::optional<WebAddress> read()
    {
        if (!readSchemeAndPath())
            return std::nullopt;
        return std::move(m_address);
    }

private:
    [[nodiscard]] bool isSpecial() const { return specialScheme(m_address.scheme) != nullptr; }
    [[nodiscard]] bool isFile() const { return m_address.scheme == "file"; }
    [[nodiscard]] bool isSlash(char c) const { return c == '/' || (c == '\\' && isSpecial()); }
    [[nodiscard]] bool startsWithSlash() const { return !m_rest.empty() && isSlash(m_rest.front()); }
    [[nodiscard]] bool startsWithTwoSlashes() const
    {
        return m_rest.size() >= 2 && isSlash(m_rest[0]) && isSlash(m_rest[1]);
    }

    bool readSchemeAndPath()
    {
        if (!readScheme())
            return readWithoutScheme();
        if (isFile())
            return readFile();
        if (isSpecial()) {
            // "http:x" on a page of the same scheme is a relative address.
            if (m_base != nullptr && m_base->scheme == m_address.scheme && !startsWithTwoSlashes())
                return readRelative();
            skipSlashes();
            return readAuthority() && readPathStart();
        }
        if (m_rest.starts_with("//")) {
            m_rest.remove_prefix(2);
            return readAuthority() && readPathStart();
        }
        if (m_rest.starts_with('/'))
            return readPathStart();
        return readOpaquePath();
    }

    bool readScheme()
    {
        if (m_rest.empty() || !isAsciiLetter(m_rest.front()))
            return false;
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), [](char c) {
            return isAsciiLetter(c) || isAsciiDigit(c) || c == '+' || c == '-' || c == '.';
        });
        if (end == m_rest.end() || *end != ':')
            return false;
        const auto length = static_cast<std::size_t>(end - m_rest.begin());
        m_address.scheme = asciiLower(m_rest.substr(0, length));
        m_rest.remove_prefix(length + 1);
        return true;
    }

    bool readWithoutScheme()
    {
        if (m_base == nullptr)
            return false;
        if (m_base->hasOpaquePath) {
            if (!m_rest.starts_with('#'))
                return false;
            m_address = *m_base;
            return readQueryAndFragment();
        }
        m_address.scheme = m_base->scheme;
        return isFile() ? readFile() : readRelative();
    }

    bool readRelative()
    {
        if (startsWithTwoSlashes()) {
            m_rest.remove_prefix(2);
            if (isSpecial())
                skipSlashes();
            return readAuthority() && readPathStart();
        }
        m_address.username = m_base->username;
        m_address.password = m_base->password;
        m_address.host = m_base->host;
        m_address.port = m_base->port;
        if (startsWithSlash())
            return readPathStart();
        return readBeside(*m_base);
    }

    // A path that goes on from the folder of `base`, a query or fragment of it.
    bool readBeside(const WebAddress& base)
    {
        m_address.path = base.path;
        if (m_rest.empty() || m_rest.front() == '#') {
            m_address.query = base.query;
        } else if (m_rest.front() != '?') {
            shorten();
            return readPath();
        }
        return readQueryAndFragment();
    }

    bool readFile()
    {
        m_address.host = "";
        if (startsWithTwoSlashes()) {
            m_rest.remove_prefix(2);
            return readFileHost() && readPathStart();
        }
        const bool fromFile = m_base != nullptr && m_base->scheme == "file";
        if (startsWithSlash()) {
            if (fromFile) {
                m_address.host = m_base->host;
                if (!startsWithDriveLetter(m_rest.substr(1)) && !m_base->path.empty() &&
                    isNormalDriveLetter(m_base->path.front()))
                    m_address.path.push_back(m_base->path.front());
            }
            return readPathStart();
        }
        if (!fromFile)
            return readPath();
        m_address.host = m_base->host;
        if (!startsWithDriveLetter(m_rest))
            return readBeside(*m_base);
        return readPath();
    }

    bool readFileHost()
    {
        const std::size_t end = std::min(m_rest.find_first_of("/\\?#"), m_rest.size());
        const std::string_view text = m_rest.substr(0, end);
        // A drive's letter is no host but the path's beginning.
        if (isDriveLetter(text)) {
            m_isDrive = true;
            return true;
        }
        m_rest.remove_prefix(end);
        if (text.empty())
            return true;
        m_address.host = parseHost(text, HostKind::Special);
        if (m_address.host == "localhost")
            m_address.host = "";
        return m_address.host.has_value();
    }

    void skipSlashes()
    {
        while (startsWithSlash())
            m_rest.remove_prefix(1);
    }

    bool readAuthority()
    {
        const std::string_view ends = isSpecial() ? "/\\?#" : "/?#";
        std::string_view authority = m_rest.substr(0, m_rest.find_first_of(ends));
        m_rest.remove_prefix(authority.size());
        const std::size_t at = authority.rfind('@');
        if (at != std::string_view::npos) {
            readCredentials(authority.substr(0, at));
            authority.remove_prefix(at + 1);
            if (authority.empty())
                return false;
        }
        return readHostAndPort(authority);
    }

    void readCredentials(std::string_view text)
    {
        const std::size_t colon = text.find(':');
        m_address.username = percentEncoded(text.substr(0, colon), AddressPart::UserInfo);
        if (colon != std::string_view::npos)
            m_address.password = percentEncoded(text.substr(colon + 1), AddressPart::UserInfo);
    }

    bool readHostAndPort(std::string_view text)
    {
        const std::size_t bracket = text.rfind(']');
        const std::size_t colon = text.find(':', bracket == std::string_view::npos ? 0 : bracket);
        const std::string_view host = text.substr(0, colon);
        if (host.empty() && (isSpecial() || colon != std::string_view::npos))
            return false;
        m_address.host = host.empty() ? std::optional<std::string>("")
                                      : parseHost(host, isSpecial() ? HostKind::Special : HostKind::Opaque);
        return m_address.host && (colon == std::string_view::npos || readPort(text.substr(colon + 1)));
    }

    bool readPort(std::string_view text)
    {
        if (text.empty())
            return true;
        std::uint16_t port = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
        if (error != std::errc() || end != text.data() + text.size())
            return false;
        const SpecialScheme* const special = specialScheme(m_address.scheme);
        if (special == nullptr || special->port != port)
            m_address.port = port;
        return true;
    }

    bool readPathStart()
    {
        if (m_isDrive)
            return readPath();
        if (startsWithSlash())
            m_rest.remove_prefix(1);
        else if (!isSpecial() && (m_rest.empty() || m_rest.front() == '?' || m_rest.front() == '#'))
            return readQueryAndFragment();
        return readPath();
    }

    bool readPath()
    {
        const std::string_view ends = isSpecial() ? "/\\?#" : "/?#";
        for (;;) {
            const std::size_t end = std::min(m_rest.find_first_of(ends), m_rest.size());
            const bool slash = end < m_rest.size() && isSlash(m_rest[end]);
            addSegment(m_rest.substr(0, end), slash);
            m_rest.remove_prefix(end);
            if (!slash)
                return readQueryAndFragment();
            m_rest.remove_prefix(1);
        }
    }

    void addSegment(std::string_view text, bool slashFollows)
    {
        std::string segment = percentEncoded(text, AddressPart::Path);
        if (isDoubleDot(segment)) {
            shorten();
            if (!slashFollows)
                m_address.path.emplace_back();
        } else if (isSingleDot(segment)) {
            if (!slashFollows)
                m_address.path.emplace_back();
        } else {
            if (isFile() && m_address.path.empty() && isDriveLetter(segment))
                segment[1] = ':';
            m_address.path.push_back(std::move(segment));
        }
    }

    void shorten()
    {
        const bool isDrive =
            isFile() && m_address.path.size() == 1 && isNormalDriveLetter(m_address.path.front());
        if (!isDrive && !m_address.path.empty())
            m_address.path.pop_back();
    }

    bool readOpaquePath()
    {
        const std::size_t end = std::min(m_rest.find_first_of("?#"), m_rest.size());
        m_address.hasOpaquePath = true;
        m_address.opaque = percentEncoded(m_rest.substr(0, end), AddressPart::C0Control);
        // A blank before a query or fragment would be lost when the address is read again.
        if (end < m_rest.size() && m_address.opaque.ends_with(' '))
            m_address.opaque.replace(m_address.opaque.size() - 1, 1, "%20");
        m_rest.remove_prefix(end);
        return readQueryAndFragment();
    }

    bool readQueryAndFragment()
    {
        const std::size_t hash = m_rest.find('#');
        if (m_rest.starts_with('?')) {
            const std::string_view query = m_rest.substr(1, hash == std::string_view::npos ? hash : hash - 1);
            m_address.query =
                percentEncoded(query, isSpecial() ? AddressPart::SpecialQuery : AddressPart::Query);
        }
        m_address.fragment.reset();
        if (hash != std::string_view::npos)
            m_address.fragment = percentEncoded(m_rest.substr(hash + 1), AddressPart::Fragment);
        return true;
    }

    std::string_view m_rest;
    const WebAddress* m_base;
    WebAddress m_address;
    bool m_isDrive = false;
};

} // namespace

std::string WebAddress::pathText() const
{
    if (hasOpaquePath)
        return opaque;
    std::string text;
    for (const std::string& segment : path)
        text.append("/").append(segment);
    return text;
}

std::string WebAddress::text() const
{
    std::string text = scheme + ':';
    if (host) {
        text += "//";
        if (!username.empty() || !password.empty()) {
            text += username;
            if (!password.empty())
                text.append(":").append(password);
            text += '@';
        }
        text += *host;
        if (port)
            text.append(":").append(std::to_string(*port));
    } else if (!hasOpaquePath && path.size() > 1 && path.front().empty()) {
        text += "/.";
    }
    text += pathText();
    if (query)
        text.append("?").append(*query);
    if (fragment)
        text.append("#").append(*fragment);
    return text;
}

std::string_view trimmedAddress(std::string_view input)
{
    const auto isC0OrBlank = [](char c) { return static_cast<unsigned char>(c) <= 0x20; };
    while (!input.empty() && isC0OrBlank(input.front()))
        input.remove_prefix(1);
    while (!input.empty() && isC0OrBlank(input.back()))
        input.remove_suffix(1);
    return input;
}

std::optional<WebAddress> parseAddress(std::string_view input, const WebAddress* base)
{
    std::string text(trimmedAddress(input));
    std::erase_if(text, [](char c) { return c == '\t' || c == '\n' || c == '\r'; });
    return AddressReader(text, base).read();
}

} // namespace luma
