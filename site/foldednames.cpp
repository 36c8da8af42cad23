// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/foldednames.h"

#include "base/ascii.h"

#include <cstring>

namespace luma {

FoldedNames::FoldedNames(std::size_t count)
{
    constexpr std::size_t usualLength = 64;
    m_ends.reserve(count);
    m_all.reserve(count * usualLength);
}

void FoldedNames::add(std::string_view name)
{
    const std::size_t begin = m_all.size();
    m_all.append(name);
    unsigned char bits = 0;
    for (std::size_t i = begin; i < m_all.size(); ++i) {
        bits = static_cast<unsigned char>(bits | static_cast<unsigned char>(m_all[i]));
        m_all[i] = asciiLower(m_all[i]);
    }
    if (bits >= 0x80)
        m_all.replace(
            begin, name.size(),
            QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).toCaseFolded().toStdString());
    m_all += '\n';
    m_ends.push_back(static_cast<std::uint32_t>(m_all.size()));
}

std::vector<bool> FoldedNames::holding(const QString& text) const
{
    const std::string wanted = text.toCaseFolded().toStdString();
    std::vector<bool> found(size(), wanted.empty());
    if (wanted.empty())
        return found;
    std::size_t name = 0;
    std::size_t at = 0;
    while (at < m_all.size()) {
        const void* const hit = ::memmem(m_all.data() + at, m_all.size() - at, wanted.data(), wanted.size());
        if (hit == nullptr)
            break;
        const auto place = static_cast<std::size_t>(static_cast<const char*>(hit) - m_all.data());
        while (m_ends[name] <= place)
            ++name;
        found[name] = true;
        at = m_ends[name];
    }
    return found;
}

} // namespace luma
