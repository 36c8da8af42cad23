// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/ignorednames.h"

#include "base/ascii.h"
#include "base/utf8.h"

#include <fnmatch.h>

#include <algorithm>

namespace luma {

namespace {

// The last two are our own: temporary files, and the folders of kept versions (KeptPlace).
constexpr std::string_view always =
    ".git\n.svn\n.hg\n*~\n.*.swp\nThumbs.db\n.DS_Store\n.luma-??????\n.*.luma-kept/\n";

// Most names do not even end as a pattern does, and fnmatch(3) is slow to find that out.
bool differAtEnds(std::string_view pattern, std::string_view text)
{
    constexpr std::string_view special = "*?[]\\";
    const auto differ = [special](char wanted, char letter) {
        return wanted != letter && special.find(wanted) == std::string_view::npos;
    };
    return text.empty() || differ(pattern.front(), text.front()) || differ(pattern.back(), text.back());
}

bool fits(const std::string& pattern, bool isLiteral, const char* text)
{
    if (isLiteral)
        return pattern == text;
    return !differAtEnds(pattern, text) && ::fnmatch(pattern.c_str(), text, FNM_PATHNAME) == 0;
}

} // namespace

IgnoredNames::IgnoredNames(std::string_view patterns)
{
    for (std::string_view lines : {always, patterns}) {
        while (!lines.empty()) {
            const std::size_t end = std::min(lines.find('\n'), lines.size());
            add(trimmed(lines.substr(0, end)));
            lines.remove_prefix(std::min(end + 1, lines.size()));
        }
    }
}

void IgnoredNames::add(std::string_view line)
{
    Pattern pattern;
    pattern.foldersOnly = line.ends_with('/');
    while (line.ends_with('/'))
        line.remove_suffix(1);
    pattern.isAnchored = line.find('/') != std::string_view::npos;
    while (line.starts_with('/'))
        line.remove_prefix(1);
    // fnmatch(3) has no "**"; rsync would match slashes with it.
    for (const char c : line) {
        if (c != '*' || !pattern.text.ends_with('*'))
            pattern.text.push_back(c);
    }
    pattern.isLiteral = line.find_first_of("*?[") == std::string_view::npos;
    if (!pattern.text.empty())
        m_patterns.push_back(std::move(pattern));
}

std::optional<std::string> IgnoredNames::patternOf(const std::string& path)
{
    if (!isValidUtf8(path))
        return std::nullopt;
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
    // A blank at the end, like a control character, would be lost in the list of patterns.
    const bool isPlain = path.find_first_of("*?[") == std::string::npos && !path.ends_with(' ') &&
                         std::none_of(path.begin(), path.end(), isControl);
    std::string pattern = "/";
    for (std::size_t i = 0; i < path.size(); ++i) {
        const char c = path[i];
        if (!isPlain && isControl(c))
            pattern += '?';
        else if (!isPlain && c == ' ' && i + 1 == path.size())
            pattern += "[ ]";
        else if (!isPlain && std::string_view("*?[\\").find(c) != std::string_view::npos)
            pattern.append(1, '\\').append(1, c);
        else
            pattern += c;
    }
    return pattern;
}

bool IgnoredNames::match(const std::string& folder, const char* name, bool isFolder) const
{
    return std::any_of(m_patterns.begin(), m_patterns.end(), [&](const Pattern& pattern) {
        if (pattern.foldersOnly && !isFolder)
            return false;
        if (!pattern.isAnchored)
            return fits(pattern.text, pattern.isLiteral, name);
        const std::string path = folder.empty() ? name : folder + '/' + name;
        return fits(pattern.text, pattern.isLiteral, path.c_str());
    });
}

std::vector<std::string> IgnoredNames::rsyncOptions() const
{
    std::vector<std::string> options;
    for (const Pattern& pattern : m_patterns)
        options.push_back("--filter=- " + std::string(pattern.isAnchored ? "/" : "") + pattern.text +
                          (pattern.foldersOnly ? "/" : ""));
    return options;
}

} // namespace luma
