// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/webhost.h"

#include "links/percentencoding.h"

#include <QString>
#include <QUrl>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <vector>

namespace luma {

namespace {

bool isForbiddenInHost(char c)
{
    constexpr std::string_view forbidden = " #/:<>?@[\\]^|";
    return c == '\0' || c == '\t' || c == '\n' || c == '\r' || forbidden.find(c) != std::string_view::npos;
}

bool isForbiddenInDomain(char c)
{
    return isForbiddenInHost(c) || c == '%' || static_cast<unsigned char>(c) < 0x20 || c == '\x7F';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isAsciiText(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// An IPv4 number: decimal, 0x hexadecimal or 0 octal; nothing when it is none. Saturates far above 2^32.
std::optional<std::uint64_t> ipv4Number(std::string_view text)
{
    if (text.empty())
        return std::nullopt;
    int base = 10;
    if (text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text.remove_prefix(2);
    } else if (text.size() >= 2 && text[0] == '0') {
        base = 8;
        text.remove_prefix(1);
    }
    if (text.empty())
        return 0;
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (end != text.data() + text.size())
        return std::nullopt;
    return error == std::errc::result_out_of_range ? UINT64_MAX : number;
}

std::vector<std::string_view> labelsOf(std::string_view domain)
{
    std::vector<std::string_view> labels;
    for (;;) {
        const std::size_t dot = domain.find('.');
        labels.push_back(domain.substr(0, dot));
        if (dot == std::string_view::npos)
            return labels;
        domain.remove_prefix(dot + 1);
    }
}

// The "ends in a number checker": such a domain is an IPv4 address or nothing.
bool endsInNumber(std::string_view domain)
{
    std::vector<std::string_view> labels = labelsOf(domain);
    if (labels.back().empty()) {
        if (labels.size() == 1)
            return false;
        labels.pop_back();
    }
    const std::string_view last = labels.back();
    return (!last.empty() && std::all_of(last.begin(), last.end(), isDigit)) || ipv4Number(last).has_value();
}

std::optional<std::string> parseIpv4(std::string_view domain)
{
    std::vector<std::string_view> labels = labelsOf(domain);
    if (labels.back().empty() && labels.size() > 1)
        labels.pop_back();
    if (labels.size() > 4)
        return std::nullopt;
    std::uint64_t address = 0;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const std::optional<std::uint64_t> number = ipv4Number(labels[i]);
        const bool isLast = i + 1 == labels.size();
        const std::uint64_t limit = isLast ? std::uint64_t(1) << (8 * (5 - labels.size())) : 256;
        if (!number || *number >= limit)
            return std::nullopt;
        address += isLast ? *number : *number << (8 * (3 - i));
    }
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text.append(std::to_string((address >> shift) & 0xFFU)).append(shift > 0 ? "." : "");
    return text;
}

/// Reads an IPv6 address without its brackets.
class Ipv6Reader final
{
public:
    explicit Ipv6Reader(std::string_view text) : m_text(text) {}

    std::optional<std::array<std::uint16_t, 8>> read()
    {
        if (m_text.starts_with("::")) {
            m_at = 2;
            m_compress = ++m_count;
        } else if (m_text.starts_with(':')) {
            return std::nullopt;
        }
        while (m_at < m_text.size())
            if (!readPiece())
                return std::nullopt;
        return finished();
    }

private:
    bool readPiece()
    {
        if (m_count == 8)
            return false;
        if (m_text[m_at] == ':') {
            if (m_compress >= 0)
                return false;
            ++m_at;
            m_compress = ++m_count;
            return true;
        }
        const std::size_t begin = m_at;
        const std::size_t most = std::min(m_text.size(), begin + 4);
        unsigned value = 0;
        const auto [end, error] = std::from_chars(m_text.data() + begin, m_text.data() + most, value, 16);
        m_at = static_cast<std::size_t>(end - m_text.data());
        if (m_at < m_text.size() && m_text[m_at] == '.')
            return m_at > begin && readIpv4(begin);
        if (m_at < m_text.size() && (m_text[m_at++] != ':' || m_at == m_text.size()))
            return false;
        m_pieces.at(static_cast<std::size_t>(m_count++)) = static_cast<std::uint16_t>(value);
        return m_at > begin;
    }

    // The last two pieces written as an IPv4 address of four plain decimal numbers.
    bool readIpv4(std::size_t begin)
    {
        const std::vector<std::string_view> parts = labelsOf(m_text.substr(begin));
        if (m_count > 6 || parts.size() != 4)
            return false;
        std::array<unsigned, 4> bytes{};
        for (std::size_t i = 0; i < 4; ++i) {
            const std::string_view part = parts[i];
            const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), bytes.at(i));
            if (part.empty() || end != part.data() + part.size() || bytes.at(i) > 255 ||
                (part.size() > 1 && part[0] == '0'))
                return false;
        }
        for (std::size_t i = 0; i < 4; i += 2)
            m_pieces.at(static_cast<std::size_t>(m_count++)) =
                static_cast<std::uint16_t>(bytes.at(i) * 256 + bytes.at(i + 1));
        m_at = m_text.size();
        return true;
    }

    std::optional<std::array<std::uint16_t, 8>> finished()
    {
        if (m_compress < 0)
            return m_count == 8 ? std::optional(m_pieces) : std::nullopt;
        // The gap counted as a piece while reading; what follows it goes to the end.
        const auto gap = m_pieces.begin() + m_compress - 1;
        const auto end = m_pieces.begin() + m_count;
        std::array<std::uint16_t, 8> address{};
        std::copy(m_pieces.begin(), gap, address.begin());
        std::copy_backward(gap + 1, end, address.end());
        return address;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::array<std::uint16_t, 8> m_pieces{};
    int m_count = 0;
    int m_compress = -1;
};

std::string ipv6Text(const std::array<std::uint16_t, 8>& pieces)
{
    // The first longest run of zeros, of two at least, becomes "::".
    std::size_t gap = 8;
    std::size_t gapLength = 1;
    for (std::size_t i = 0; i < 8; ++i) {
        std::size_t length = 0;
        while (i + length < 8 && pieces.at(i + length) == 0)
            ++length;
        if (length > gapLength) {
            gap = i;
            gapLength = length;
        }
        i += length;
    }
    std::string text = "[";
    for (std::size_t i = 0; i < 8; ++i) {
        if (i == gap) {
            text += i == 0 ? "::" : ":";
            i += gapLength - 1;
            continue;
        }
        std::array<char, 4> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + 4, pieces.at(i), 16).ptr;
        text.append(digits.data(), end).append(i < 7 ? ":" : "");
    }
    return text + ']';
}

// Lower case, and the letters of other scripts in their ASCII form (UTS 46).
std::optional<std::string> asciiDomain(const std::string& domain)
{
    std::string ascii = domain;
    std::transform(ascii.begin(), ascii.end(), ascii.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; });
    if (!isAsciiText(domain) || ascii.starts_with("xn--") || ascii.find(".xn--") != std::string::npos)
        ascii = QUrl::toAce(QString::fromStdString(domain)).toStdString();
    if (ascii.empty() || std::any_of(ascii.begin(), ascii.end(), isForbiddenInDomain))
        return std::nullopt;
    return ascii;
}

} // namespace

std::optional<std::string> parseHost(std::string_view text, HostKind kind)
{
    if (text.starts_with('[')) {
        if (!text.ends_with(']'))
            return std::nullopt;
        const auto pieces = Ipv6Reader(text.substr(1, text.size() - 2)).read();
        return pieces ? std::optional(ipv6Text(*pieces)) : std::nullopt;
    }
    if (kind == HostKind::Opaque) {
        if (std::any_of(text.begin(), text.end(), isForbiddenInHost))
            return std::nullopt;
        return percentEncoded(text, AddressPart::C0Control);
    }
    std::optional<std::string> domain = asciiDomain(percentDecoded(text));
    if (domain && endsInNumber(*domain))
        return parseIpv4(*domain);
    return domain;
}

} // namespace luma
