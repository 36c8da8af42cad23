// SPDX-License-Identifier: GPL-3.0-or-later
#include "mounts/shareurl.h"

#include "base/ascii.h"
#include "base/pathbelow.h"

#include <QByteArray>

#include <algorithm>

namespace luma {

namespace {

// An smb server ignores the letter case of the share's name, which comes first.
std::string comparablePath(const ShareUrl& url)
{
    if (url.scheme != "smb")
        return url.path;
    const std::size_t end = std::min(url.path.find('/', 1), url.path.size());
    return asciiLower(std::string_view(url.path).substr(0, end)) + url.path.substr(end);
}

std::string percentDecoded(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = i + 2 < text.size() && text[i] == '%' ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low < 0) {
            result += text[i];
            continue;
        }
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

// A user name with every reserved character escaped, ':' included, which would begin a password.
std::string percentEncoded(std::string_view text)
{
    return QByteArray(text.data(), static_cast<qsizetype>(text.size())).toPercentEncoding().toStdString();
}

std::string tidyPath(std::string_view path)
{
    std::string result = "/";
    for (const char c : path) {
        if (c != '/' || result.back() != '/')
            result += c;
    }
    if (result.size() > 1 && result.back() == '/')
        result.pop_back();
    return result;
}

struct Authority
{
    std::size_t begin;
    std::size_t end;
};

std::optional<Authority> authorityOf(std::string_view url)
{
    const std::size_t colon = url.find("://");
    if (colon == std::string_view::npos || colon == 0)
        return {};
    return Authority{colon + 3, std::min(url.find('/', colon + 3), url.size())};
}

void splitHost(std::string_view text, ShareUrl& into)
{
    const std::size_t bracket = text.rfind(']');
    std::size_t colon = text.rfind(':');
    if (bracket != std::string_view::npos && colon != std::string_view::npos && colon < bracket)
        colon = std::string_view::npos;
    std::string_view host = text.substr(0, colon);
    if (host.size() > 1 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    into.host = asciiLower(percentDecoded(host));
    if (colon != std::string_view::npos)
        into.port = text.substr(colon + 1);
}

} // namespace

std::optional<ShareUrl> parseShareUrl(std::string_view url)
{
    const auto authority = authorityOf(url);
    if (!authority)
        return {};
    ShareUrl result;
    result.scheme = asciiLower(url.substr(0, authority->begin - 3));
    std::string_view host = url.substr(authority->begin, authority->end - authority->begin);
    if (const std::size_t at = host.rfind('@'); at != std::string_view::npos) {
        result.user = percentDecoded(host.substr(0, at));
        host.remove_prefix(at + 1);
    }
    splitHost(host, result);
    result.path = tidyPath(percentDecoded(url.substr(authority->end)));
    if (result.host.empty())
        return {};
    return result;
}

std::string shareUrlForUser(const std::string& url, const std::string& user)
{
    const auto parts = parseShareUrl(url);
    if (!parts || user.empty() || !parts->user.empty())
        return url;
    const std::size_t backslash = parts->scheme == "smb" ? user.find('\\') : std::string::npos;
    const std::string name =
        backslash == std::string::npos
            ? percentEncoded(user)
            : percentEncoded(user.substr(0, backslash)) + ';' + percentEncoded(user.substr(backslash + 1));
    return std::string(url).insert(authorityOf(url)->begin, name + '@');
}

std::optional<std::string> pathBelowShare(const ShareUrl& url, const ShareUrl& share)
{
    const bool sameUser = url.user.empty() || share.user.empty() || url.user == share.user;
    if (url.scheme != share.scheme || url.host != share.host || url.port != share.port || !sameUser)
        return {};
    const auto below = pathBelow(comparablePath(url), comparablePath(share));
    return below ? std::optional(url.path.substr(url.path.size() - below->size())) : std::nullopt;
}

} // namespace luma
