// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/namespellings.h"

#include "base/ascii.h"
#include "html/characterreferences.h"

#include <algorithm>

namespace luma {

namespace {

// The characters that other spellings than the plain one begin with.
const std::bitset<256> marks = [] {
    std::bitset<256> set;
    for (const char c : std::string_view("%&\\\t\n\r"))
        set.set(static_cast<unsigned char>(c));
    return set;
}();

// The number in `text`, its digits in `base`; large ones are cut off.
unsigned numberIn(std::string_view text, unsigned base)
{
    unsigned number = 0;
    for (const char c : text) {
        const int digit = hexValue(c);
        if (digit < 0 || static_cast<unsigned>(digit) >= base || number > 0xFFFF)
            break;
        number = number * base + static_cast<unsigned>(digit);
    }
    return number;
}

bool isUtf16(std::string_view bytes)
{
    return bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE") ||
           bytes.substr(0, 4).find('\0') != std::string_view::npos;
}

} // namespace

NameSpellings::NameSpellings(const std::vector<std::string>& names) : m_names(names)
{
    std::string characters;
    for (const std::string& name : names) {
        m_mayBeAnyBytes = m_mayBeAnyBytes || name.empty();
        for (const char c : name) {
            m_mayBeAnyBytes = m_mayBeAnyBytes || static_cast<unsigned char>(c) > 0x7F;
            m_characters.set(static_cast<unsigned char>(c));
            characters += c;
        }
    }
    if (!m_mayBeAnyBytes)
        m_references = namedReferencesFor(characters);
}

bool NameSpellings::mayBeIn(std::string_view bytes) const
{
    const std::vector<std::string>& names = m_names.names();
    if (m_mayBeAnyBytes || isUtf16(bytes) ||
        (names.size() == 1 ? bytes.find(names.front()) != std::string_view::npos : m_names.holdsAny(bytes)))
        return true;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (!marks[static_cast<unsigned char>(bytes[i])])
            continue;
        const std::string_view behind = bytes.substr(i + 1);
        switch (bytes[i]) {
        case '%':
            if (behind.size() > 1 && hexValue(behind[0]) >= 0 && hexValue(behind[1]) >= 0 &&
                isOfName(numberIn(behind.substr(0, 2), 16)))
                return true;
            break;
        case '&':
            if (mayBeReference(behind))
                return true;
            break;
        case '\\':
            if (mayBeEscape(behind))
                return true;
            break;
        default:
            if (isBrokenName(bytes, i))
                return true;
        }
    }
    return false;
}

bool NameSpellings::mayBeReference(std::string_view behind) const
{
    if (!behind.starts_with('#'))
        return std::any_of(m_references.begin(), m_references.end(),
                           [behind](const std::string& name) { return behind.starts_with(name); });
    behind.remove_prefix(1);
    const bool isHexadecimal = behind.starts_with('x') || behind.starts_with('X');
    const unsigned code = numberIn(behind.substr(isHexadecimal ? 1 : 0), isHexadecimal ? 16 : 10);
    // A line end may break a name.
    return code <= 0x7F &&
           (m_characters[code] || code == '\n' || code == '\r' || code == '\t' || code == '%');
}

bool NameSpellings::mayBeEscape(std::string_view behind) const
{
    if (behind.empty())
        return false;
    if (hexValue(behind.front()) < 0)
        return isOfName(static_cast<unsigned char>(behind.front())) || behind.front() == '\n' ||
               behind.front() == '\r' || behind.front() == '%';
    const unsigned code = numberIn(behind.substr(0, 6), 16);
    return code <= 0x7F && (m_characters[code] || code == '%' || code < 0x20);
}

// Browsers drop line ends and tabs from addresses.
bool NameSpellings::isBrokenName(std::string_view bytes, std::size_t at) const
{
    const std::size_t next = bytes.find_first_not_of("\t\n\r", at);
    if (at == 0 || next == std::string_view::npos ||
        !m_characters[static_cast<unsigned char>(bytes[at - 1])] ||
        !m_characters[static_cast<unsigned char>(bytes[next])])
        return false;
    constexpr std::size_t mostCompared = 8;
    if (m_names.names().size() > mostCompared)
        return true;
    const std::string_view before = bytes.substr(0, at);
    for (const std::string& name : m_names.names()) {
        for (std::size_t cut = 1; cut < name.size(); ++cut) {
            if (name[cut] == bytes[next] && before.ends_with(std::string_view(name).substr(0, cut)))
                return true;
        }
    }
    return false;
}

} // namespace luma
