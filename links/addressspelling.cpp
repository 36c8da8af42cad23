// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/addressspelling.h"

#include "base/ascii.h"
#include "base/pathbelow.h"
#include "links/percentencoding.h"

#include <algorithm>
#include <vector>

namespace luma {

namespace {

using Page = SiteAddresses::Page;
using Names = std::vector<std::string>;

constexpr std::size_t npos = std::string_view::npos;

bool isSlash(char c)
{
    return c == '/' || c == '\\';
}

bool isC0OrBlank(char c)
{
    return static_cast<unsigned char>(c) <= 0x20;
}

// An address in the parts that are kept or changed on their own.
struct AddressParts
{
    enum class Form : unsigned char { Relative, FromRoot, Absolute };

    Form form = Form::Relative;
    std::string_view before; // blanks, and up to the host
    std::string_view path;
    std::string_view behind; // query, fragment, blanks
};

// Where the host ends in "https://host/..." or "//host/..."; 0 where no host is named.
std::size_t endOfHost(std::string_view address)
{
    std::size_t at = 0;
    for (const std::string_view scheme : {"https:", "http:"}) {
        if (startsWithIgnoringAsciiCase(address, scheme)) {
            at = scheme.size();
            break;
        }
    }
    if (at + 1 >= address.size() || !isSlash(address[at]) || !isSlash(address[at + 1]))
        return 0;
    while (at < address.size() && isSlash(address[at]))
        ++at;
    return std::min(address.find_first_of("/\\?#", at), address.size());
}

AddressParts partsOf(std::string_view value)
{
    AddressParts parts;
    std::size_t begin = 0;
    std::size_t end = value.size();
    while (begin < end && isC0OrBlank(value[begin]))
        ++begin;
    while (end > begin && isC0OrBlank(value[end - 1]))
        --end;
    const std::size_t host = endOfHost(value.substr(begin, end - begin));
    begin += host;
    const std::string_view rest = value.substr(begin, end - begin);
    const std::size_t pathEnd = std::min(rest.find_first_of("?#"), rest.size());
    parts.before = value.substr(0, begin);
    parts.path = rest.substr(0, pathEnd);
    parts.behind = value.substr(begin + pathEnd);
    parts.form = host > 0                                             ? AddressParts::Form::Absolute
                 : !parts.path.empty() && isSlash(parts.path.front()) ? AddressParts::Form::FromRoot
                                                                      : AddressParts::Form::Relative;
    return parts;
}

// One segment of a path with the slash behind it, both as written.
struct Segment
{
    std::string_view text;
    std::string_view slash;
    std::string name; // decoded

    [[nodiscard]] bool isTrivial() const { return name.empty() || name == "."; }
};

std::string nameOf(std::string_view text)
{
    std::string plain;
    for (const char c : text) {
        if (c != '\t' && c != '\n' && c != '\r') // the URL standard drops them
            plain += c;
    }
    // Names with a slash or NUL in them lead nowhere; they stay as written.
    const std::string decoded = percentDecoded(plain);
    return decoded.find('/') == npos && decoded.find('\0') == npos ? decoded : plain;
}

// Those behind the slash that a path from the root begins with.
std::vector<Segment> segmentsOf(const AddressParts& parts)
{
    std::string_view path = parts.path;
    if (parts.form != AddressParts::Form::Relative)
        path.remove_prefix(std::min<std::size_t>(path.size(), 1));
    std::vector<Segment> segments;
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find_first_of("/\\"), path.size());
        Segment segment{path.substr(0, slash), path.substr(slash, 1), {}};
        segment.name = nameOf(segment.text);
        path.remove_prefix(std::min(slash + 1, path.size()));
        segments.push_back(std::move(segment));
    }
    return segments;
}

// A name on the way from the host's root to a target.
struct Step
{
    std::string name;
    std::size_t segment = npos; // that wrote it; none where the page's folder gave it
};

struct Way
{
    std::vector<Step> steps;
    std::size_t above = 0; // how far it climbs above the root
};

Way wayOf(const Names& start, const std::vector<Segment>& segments)
{
    Way way;
    for (const std::string& name : start)
        way.steps.push_back({name, npos});
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (segments[i].name == ".")
            continue;
        if (segments[i].name != "..")
            way.steps.push_back({segments[i].name, i});
        else if (!way.steps.empty())
            way.steps.pop_back();
        else
            ++way.above;
    }
    std::erase_if(way.steps, [](const Step& step) { return step.name.empty(); });
    return way;
}

void append(Names& names, std::string_view path)
{
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        names.emplace_back(path.substr(0, slash));
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
}

Names homeOf(const WebAddress& own)
{
    Names names;
    for (const std::string& segment : own.path)
        names.push_back(percentDecoded(segment));
    return names;
}

// The folder on its host that relative addresses of the page start from.
Names folderOf(const SiteAddresses& addresses, const Page& page)
{
    Names names;
    if (page.hasBase) {
        for (const std::string& segment : page.base.front().path)
            names.push_back(percentDecoded(segment));
        if (!names.empty())
            names.pop_back();
        std::erase(names, std::string());
        return names;
    }
    names = homeOf(addresses.own().front());
    append(names, folderPart(page.path));
    return names;
}

// Tries the spellings of one address.
class Speller final
{
public:
    Speller(const SiteAddresses& addresses, std::string_view value, const Page& oldPage, const Page& newPage)
        : m_addresses(addresses),
          m_newPage(newPage),
          m_parts(partsOf(value)),
          m_segments(segmentsOf(m_parts)),
          m_oldFolder(folderOf(addresses, oldPage)),
          m_newFolder(folderOf(addresses, newPage)),
          m_way(wayOf(isRelative() ? m_oldFolder : Names(), m_segments))
    {}

    [[nodiscard]] std::optional<std::string> spelled(std::string_view value, const NewPlace& place) const
    {
        if (leadsTo(value, place))
            return std::string(value);
        for (const WebAddress& own : m_addresses.own()) {
            Names wanted = homeOf(own);
            append(wanted, place.path);
            const std::vector<Step> steps = stepsTo(wanted);
            if (auto inPlace = namesReplaced(steps); inPlace && leadsTo(*inPlace, place))
                return inPlace;
            const std::string path = isRelative() ? relativePath(steps, place.isFolderForm)
                                                  : pathFromRoot(steps, place.isFolderForm);
            if (std::string anew = joined(path); leadsTo(anew, place))
                return anew;
            // A colon, or two slashes, in front of it mean something else.
            if (std::string guarded = joined("./" + path); isRelative() && leadsTo(guarded, place))
                return guarded;
            if (std::string rooted = joined(pathFromRoot(steps, place.isFolderForm)); leadsTo(rooted, place))
                return rooted;
        }
        return std::nullopt;
    }

    [[nodiscard]] std::optional<std::string> spelledOutside() const
    {
        if (!isRelative() || m_way.steps.empty())
            return std::nullopt;
        const bool isFolder = !m_segments.back().slash.empty() || m_segments.back().isTrivial();
        std::string path = relativePath(m_way.steps, isFolder);
        for (std::size_t i = 0; i < m_way.above; ++i)
            path.insert(0, "../");
        const std::string address = joined(path);
        const AddressParts parts = partsOf(address);
        const Way way = wayOf(m_newFolder, segmentsOf(parts));
        const bool isSame = way.above == m_way.above && way.steps.size() == m_way.steps.size() &&
                            std::equal(way.steps.begin(), way.steps.end(), m_way.steps.begin(),
                                       [](const Step& a, const Step& b) { return a.name == b.name; });
        return isSame ? std::optional(address) : std::nullopt;
    }

    // Whether the address leads to the same place from both folders.
    [[nodiscard]] bool isUnmoved() const { return m_oldFolder == m_newFolder || !isRelative(); }

private:
    [[nodiscard]] bool isRelative() const { return m_parts.form == AddressParts::Form::Relative; }

    [[nodiscard]] std::string joined(std::string_view path) const
    {
        return std::string(m_parts.before).append(path).append(m_parts.behind);
    }

    [[nodiscard]] bool leadsTo(std::string_view value, const NewPlace& place) const
    {
        const LinkTarget target = m_addresses.resolve(value, m_newPage);
        return target.kind == LinkTarget::Kind::Inside && target.path == place.path &&
               target.isFolderForm == place.isFolderForm;
    }

    // The names that lead to the new place, each with the segment that writes it already.
    [[nodiscard]] std::vector<Step> stepsTo(const Names& wanted) const
    {
        std::vector<Step> steps;
        for (const std::string& name : wanted)
            steps.push_back({name, npos});
        const std::vector<Step>& old = m_way.steps;
        const std::size_t most = std::min(steps.size(), old.size());
        std::size_t first = 0;
        for (; first < most && steps[first].name == old[first].name; ++first)
            steps[first].segment = old[first].segment;
        for (std::size_t last = 1; last + first <= most; ++last) {
            if (steps[steps.size() - last].name != old[old.size() - last].name)
                break;
            steps[steps.size() - last].segment = old[old.size() - last].segment;
        }
        return steps;
    }

    // The address with only its changed names replaced where they stand; nothing where that is not all.
    [[nodiscard]] std::optional<std::string> namesReplaced(const std::vector<Step>& steps) const
    {
        if (steps.size() != m_way.steps.size())
            return std::nullopt;
        std::vector<const std::string*> replaced(m_segments.size(), nullptr);
        for (std::size_t i = 0; i < steps.size(); ++i) {
            if (steps[i].name == m_way.steps[i].name)
                continue;
            if (m_way.steps[i].segment == npos)
                return std::nullopt;
            replaced[m_way.steps[i].segment] = &steps[i].name;
        }
        std::string path(isRelative() || m_parts.path.empty() ? std::string_view()
                                                              : m_parts.path.substr(0, 1));
        for (std::size_t i = 0; i < m_segments.size(); ++i)
            path.append(replaced[i] ? encodedName(*replaced[i]) : std::string(m_segments[i].text))
                .append(m_segments[i].slash);
        return joined(path);
    }

    // A name as it is written already, with empty segments and dots behind it.
    void appendStep(std::string& path, const Step& step, bool isLast, bool isFolder) const
    {
        if (step.segment == npos) {
            path += encodedName(step.name);
        } else {
            std::size_t i = step.segment;
            path.append(m_segments[i].text);
            if (isLast && !isFolder)
                return;
            path.append(m_segments[i].slash);
            for (++i; i < m_segments.size() && m_segments[i].isTrivial(); ++i)
                path.append(m_segments[i].text).append(m_segments[i].slash);
        }
        const bool endsAsFolder = step.segment != npos && (path.ends_with("/.") || path.ends_with("\\."));
        if ((!isLast || (isFolder && !endsAsFolder)) && !isSlash(path.back()))
            path += '/';
    }

    [[nodiscard]] std::string pathFromRoot(const std::vector<Step>& steps, bool isFolder) const
    {
        std::string path =
            m_parts.path.empty() || isRelative() ? "/" : std::string(m_parts.path.substr(0, 1));
        for (std::size_t i = 0; i < steps.size(); ++i)
            appendStep(path, steps[i], i + 1 == steps.size(), isFolder);
        return path;
    }

    [[nodiscard]] std::string relativePath(const std::vector<Step>& steps, bool isFolder) const
    {
        std::size_t most = std::min(steps.size(), m_newFolder.size());
        // A folder that is named without a slash behind it stays named.
        if (!isFolder)
            most = std::min(most, steps.size() - std::min<std::size_t>(steps.size(), 1));
        std::size_t common = 0;
        while (common < most && m_way.above == 0 && steps[common].name == m_newFolder[common])
            ++common;
        std::string path = m_parts.path.starts_with("./") ? "./" : "";
        for (std::size_t i = common; i < m_newFolder.size(); ++i)
            path += "../";
        for (std::size_t i = common; i < steps.size(); ++i)
            appendStep(path, steps[i], i + 1 == steps.size(), isFolder);
        if (path.empty())
            path = "./";
        const bool endsInDots = m_parts.path.ends_with("..") || m_parts.path == ".";
        if (common == steps.size() && endsInDots && path.ends_with("./"))
            path.pop_back();
        return path;
    }

    const SiteAddresses& m_addresses;
    const Page& m_newPage;
    AddressParts m_parts;
    std::vector<Segment> m_segments;
    Names m_oldFolder;
    Names m_newFolder;
    Way m_way;
};

} // namespace

std::string encodedName(std::string_view name)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : name) {
        const auto code = static_cast<unsigned char>(c);
        if (isAsciiAlphanumeric(c) || std::string_view("-._~!$*+;:@=").find(c) != npos)
            text += c;
        else
            text.append(1, '%').append(1, digits[code >> 4U]).append(1, digits[code & 15U]);
    }
    return text;
}

std::optional<std::string> respelledAddress(const SiteAddresses& addresses, std::string_view value,
                                            const Page& oldPage, const Page& newPage, const NewPlace& place)
{
    return Speller(addresses, value, oldPage, newPage).spelled(value, place);
}

std::string respelledOutside(const SiteAddresses& addresses, std::string_view value, const Page& oldPage,
                             const Page& newPage)
{
    if (oldPage.hasBase || newPage.hasBase || oldPage.path == newPage.path)
        return std::string(value);
    const Speller speller(addresses, value, oldPage, newPage);
    return speller.isUnmoved() ? std::string(value) : speller.spelledOutside().value_or(std::string(value));
}

} // namespace luma
