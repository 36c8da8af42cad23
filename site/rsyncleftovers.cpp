// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/rsyncleftovers.h"

#include "base/ascii.h"
#include "base/files.h"
#include "base/pathbelow.h"
#include "site/publishedfiles.h"

#include <algorithm>
#include <filesystem>
#include <unordered_set>
#include <utility>

namespace luma {

namespace {

constexpr std::size_t suffixLength = 7; // a dot, and six letters or digits
// rsync cuts names that would become too long; so much is left of each.
constexpr std::size_t surelyKept = 200;

bool hasForm(std::string_view path)
{
    const std::string_view name = namePart(path);
    const std::string_view suffix = name.substr(name.size() - std::min(name.size(), suffixLength));
    return name.starts_with('.') && name.size() > suffixLength + 1 && suffix.starts_with('.') &&
           std::all_of(suffix.begin() + 1, suffix.end(), isAsciiAlphanumeric);
}

// The folder and the part of the name that a file and its temporary file have in common. rsync puts no second dot
// before a name that begins with one.
std::string commonPart(std::string_view folder, std::string_view name)
{
    if (name.starts_with('.'))
        name.remove_prefix(1);
    return std::string(folder) + '/' + std::string(name.substr(0, surelyKept));
}

} // namespace

std::vector<std::string> rsyncTemporaries(const std::vector<std::string_view>& receiving,
                                          const std::vector<std::string_view>& sending)
{
    std::vector<std::string> found = rsyncTemporaries(receiving);
    if (found.empty())
        return found;
    std::unordered_set<std::string> sent;
    for (const std::string_view path : sending)
        sent.insert(commonPart(folderPart(path), namePart(path)));
    std::erase_if(found, [&sent](std::string_view path) {
        const std::string_view name = namePart(path);
        return !sent.contains(commonPart(folderPart(path), name.substr(0, name.size() - suffixLength)));
    });
    return found;
}

std::vector<std::string> rsyncTemporaries(const std::vector<std::string_view>& receiving)
{
    std::vector<std::string> found;
    for (const std::string_view path : receiving) {
        if (hasForm(path))
            found.emplace_back(path);
    }
    return found;
}

RsyncLeftovers::RsyncLeftovers(std::string site, Direction direction,
                               const std::vector<std::string>& temporaries)
    : m_site(std::move(site)), m_direction(direction)
{
    const auto noted = m_site.empty() ? Result<std::string>(Error{}) : readFile(note());
    std::unordered_set<std::string_view> before;
    for (std::string_view rest = noted ? std::string_view(*noted) : std::string_view(); !rest.empty();) {
        const std::size_t end = std::min(rest.find('\0'), rest.size());
        before.insert(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    for (const std::string& path : temporaries)
        (noted && !before.contains(path) ? m_paths : m_others).push_back(path);
}

RsyncLeftovers RsyncLeftovers::leftToTheNext() const
{
    RsyncLeftovers left = *this;
    left.m_keepsNote = !m_paths.empty();
    left.m_paths.clear();
    return left;
}

// Each direction has its own: the files of one side say nothing about those of the other.
std::filesystem::path RsyncLeftovers::note() const
{
    return publishingFile(m_site, m_direction == Direction::Upload ? ".begun" : ".begun-here");
}

void RsyncLeftovers::noteBegin() const
{
    std::string text;
    for (const std::string& path : m_others)
        text.append(path).push_back('\0');
    if (!m_site.empty())
        (void)writeFile(note(), text, 0600);
}

void RsyncLeftovers::noteEnd() const
{
    std::error_code error;
    if (!m_site.empty() && !m_keepsNote)
        std::filesystem::remove(note(), error);
}

} // namespace luma
