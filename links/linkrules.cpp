// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkrules.h"

#include "base/utf8.h"

#include <algorithm>
#include <vector>

namespace luma {

namespace {

using Components = std::vector<std::string_view>;

// The first component of an absolute path is "/". Empty components between and after slashes are kept.
Components componentsOf(std::string_view path)
{
    Components components;
    if (path.starts_with('/')) {
        components.push_back(path.substr(0, 1));
        path.remove_prefix(1);
    }
    if (path.empty())
        return components;
    for (;;) {
        const std::size_t slash = path.find('/');
        components.push_back(path.substr(0, slash));
        if (slash == std::string_view::npos)
            return components;
        path.remove_prefix(slash + 1);
    }
}

bool isNothing(std::string_view component)
{
    return component.empty() || component == ".";
}

std::string joined(const Components& components, std::size_t from)
{
    std::string path;
    for (std::size_t i = from; i < components.size(); ++i) {
        if (i > from && components[i - 1] != "/")
            path += '/';
        path += components[i];
    }
    return path;
}

void removeLast(Components& components)
{
    while (components.size() > 1 && isNothing(components.back()))
        components.pop_back();
    if (components.size() > 1 || (!components.empty() && components.back() != "/"))
        components.pop_back();
}

bool containsIgnoringAsciiCase(std::string_view text, std::string_view wanted)
{
    const auto same = [](char a, char b) { return asciiLower(a) == asciiLower(b); };
    return std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), same) != text.end();
}

} // namespace

FileKind fileKind(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return FileKind::Other;
    const std::string_view extension = name.substr(dot + 1);
    const auto in = [extension](const auto& list) {
        return std::find(list.begin(), list.end(), extension) != list.end();
    };
    if (in(pageExtensions))
        return FileKind::Page;
    if (extension == styleSheetExtension)
        return FileKind::StyleSheet;
    return in(plainTextExtensions) ? FileKind::PlainText : FileKind::Other;
}

bool isExternalLink(std::string_view link)
{
    if (link.empty())
        return false;
    if (link.front() == '#')
        return true;
    if (asciiLower(link.front()) == 'h' &&
        (startsWithIgnoringAsciiCase(link, "http://") || startsWithIgnoringAsciiCase(link, "https://")))
        return true;
    return link.find(':') != std::string_view::npos && containsIgnoringAsciiCase(link, "mailto:");
}

bool hasSchemeOrHost(std::string_view link)
{
    if (link.starts_with("//"))
        return true;
    const auto end = std::find_if_not(link.begin(), link.end(), [](char c) {
        return isAsciiAlphanumeric(c) || c == '+' || c == '-' || c == '.';
    });
    return end != link.end() && *end == ':' && isAsciiLetter(link.front());
}

std::string withoutPhpQuery(std::string_view link)
{
    // Any character may stand before "php?".
    std::string text;
    for (;;) {
        const std::size_t found = link.find("php?", 1);
        if (found == std::string_view::npos || link[found - 1] == '\n')
            return text.append(link);
        std::size_t before = found - 1;
        while (before > 0 && isUtf8Continuation(link[before]))
            --before;
        text.append(link.substr(0, before)).append(".php");
        link.remove_prefix(std::min(link.find('\n', found), link.size()));
    }
}

std::string checkedPath(std::string_view folder, std::string_view link)
{
    std::string path;
    path.reserve(folder.size() + 1 + link.size());
    path.append(folder).append("/").append(link);
    constexpr std::string_view index = "index";
    if (path.ends_with("/index"))
        path.resize(path.size() - index.size());
    return path;
}

std::string relativePath(const std::filesystem::path& target, const std::filesystem::path& baseFolder)
{
    const Components to = componentsOf(target.native());
    Components base = componentsOf(baseFolder.native());
    while (!base.empty() && base.back().empty())
        base.pop_back();
    if (base.empty() || to.empty() || to.front() != base.front())
        return target.native();
    std::size_t same = 1;
    while (same < base.size() && same < to.size() && base[same] == to[same])
        ++same;
    std::string path;
    for (std::size_t i = same; i < base.size(); ++i)
        path += "../";
    return path + joined(to, same);
}

std::filesystem::path resolveRelativeLink(std::string_view link, const std::filesystem::path& folder)
{
    if (link.empty())
        return folder;
    if (link.front() == '/')
        return link;
    Components components = componentsOf(folder.native());
    while (components.size() > 1 && components.back().empty())
        components.pop_back();
    for (const std::string_view piece : componentsOf(link)) {
        if (piece == "..")
            removeLast(components);
        else
            components.push_back(piece);
    }
    return joined(components, 0);
}

std::string comparablePath(std::string_view path)
{
    Components components = componentsOf(path);
    components.erase(std::remove_if(components.begin(), components.end(), isNothing), components.end());
    return joined(components, 0);
}

std::string_view pathPart(std::string_view link)
{
    return link.substr(0, link.find_first_of("?#"));
}

std::string linkedPrefix(std::string_view relative)
{
    constexpr std::string_view index = "/index.";
    constexpr std::string_view extension = "html";
    std::string prefix;
    for (;;) {
        const std::size_t begin = relative.find(index);
        if (begin == std::string_view::npos)
            return prefix.append(relative);
        const std::size_t rest = begin + index.size();
        const std::size_t lineEnd = std::min(relative.find('\n', rest), relative.size());
        const std::size_t last = relative.substr(rest, lineEnd - rest).rfind(extension);
        if (last == std::string_view::npos) {
            prefix.append(relative.substr(0, rest));
            relative.remove_prefix(rest);
            continue;
        }
        prefix.append(relative.substr(0, begin));
        relative.remove_prefix(rest + last + extension.size());
    }
}

} // namespace luma
