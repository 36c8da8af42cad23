// SPDX-License-Identifier: GPL-3.0-or-later
#include "mounts/mounttable.h"

#include "mounts/shareurl.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace luma {

namespace fs = std::filesystem;

namespace {

bool isOctal(char c)
{
    return c >= '0' && c <= '7';
}

// The kernel writes space, tab, line feed and backslash as a backslash and three octal digits.
std::string unescaped(std::string_view text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && isOctal(text[i + 1]) && isOctal(text[i + 2]) &&
            isOctal(text[i + 3])) {
            result +=
                static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
            i += 3;
        } else
            result += text[i];
    }
    return result;
}

std::vector<std::string_view> fieldsOf(std::string_view line)
{
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        fields.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return fields;
}

std::optional<KernelMount> parseLine(std::string_view line)
{
    const std::vector<std::string_view> fields = fieldsOf(line);
    // Between the sixth field and a lone hyphen there are any number of optional fields.
    for (std::size_t i = 6; i + 2 < fields.size(); ++i) {
        if (fields[i] == "-")
            return KernelMount{unescaped(fields[i + 1]), unescaped(fields[i + 2]), unescaped(fields[3]),
                               unescaped(fields[4])};
    }
    return {};
}

std::string joined(const std::string& folder, const std::string& root)
{
    if (folder == "/")
        return root;
    return root == "/" ? folder : folder + root;
}

// "//host/share" or "//host/share/folder"; in the second form `root` repeats the folder.
std::optional<ShareUrl> shareOfCifs(const KernelMount& mount)
{
    const std::size_t slash = mount.source.find('/', 2);
    if (!mount.source.starts_with("//") || slash == std::string::npos)
        return {};
    auto share = parseShareUrl("smb:" + mount.source.substr(0, slash + 1));
    if (!share)
        return {};
    share->path = mount.source.substr(slash);
    if (share->path.find('/', 1) == std::string::npos)
        share->path = joined(share->path, mount.root);
    return share;
}

// "host:/export", "user@host:/folder", "[::1]:/export". A folder without a leading '/' is relative to the
// login's home, which is unknown here.
std::optional<ShareUrl> shareOfHostAndPath(const KernelMount& mount, const char* scheme)
{
    const std::size_t colon = mount.source.find(":/");
    if (colon == std::string::npos)
        return {};
    auto share = parseShareUrl(std::string(scheme) + "://" + mount.source.substr(0, colon) + '/');
    if (share)
        share->path = joined(mount.source.substr(colon + 1), mount.root);
    return share;
}

std::optional<ShareUrl> shareOf(const KernelMount& mount)
{
    if (mount.type == "cifs" || mount.type == "smb3")
        return shareOfCifs(mount);
    if (mount.type == "nfs" || mount.type == "nfs4")
        return shareOfHostAndPath(mount, "nfs");
    if (mount.type == "fuse.sshfs")
        return shareOfHostAndPath(mount, "sftp");
    return {};
}

} // namespace

std::vector<KernelMount> parseMountTable(std::string_view mountinfo)
{
    std::vector<KernelMount> mounts;
    while (!mountinfo.empty()) {
        const std::size_t end = std::min(mountinfo.find('\n'), mountinfo.size());
        if (auto mount = parseLine(mountinfo.substr(0, end)))
            mounts.push_back(std::move(*mount));
        mountinfo.remove_prefix(std::min(end + 1, mountinfo.size()));
    }
    return mounts;
}

std::vector<KernelMount> readMountTable()
{
    std::ifstream file("/proc/self/mountinfo", std::ios::binary);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    return parseMountTable(text);
}

std::optional<fs::path> findKernelMount(const std::vector<KernelMount>& mounts, std::string_view shareUrl,
                                        std::string_view user)
{
    auto wanted = parseShareUrl(shareUrl);
    if (!wanted)
        return {};
    wanted->user = user;
    std::optional<fs::path> found;
    std::size_t reach = 0;
    for (const KernelMount& mount : mounts) {
        auto share = shareOf(mount);
        if (!share)
            continue;
        share->port = wanted->port;
        // Of two mounts at one place the later covers the earlier.
        const auto below = pathBelowShare(*wanted, *share);
        if (!below || share->path.size() < reach)
            continue;
        reach = share->path.size();
        found = below->empty() ? mount.mountPoint : mount.mountPoint / *below;
    }
    return found;
}

} // namespace luma
