// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/folderlisting.h"

#include "base/ascii.h"
#include "base/folderreader.h"
#include "browser/displaytext.h"

#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace luma {

namespace {

// Folders that programs treat as one document or one program. Sorted.
constexpr std::array<std::string_view, 20> bundleExtensions = {
    "app",      "bundle",      "component", "download", "framework",     "kext",     "key",
    "lproj",    "mdimporter",  "numbers",   "pages",    "photoslibrary", "pkg",      "plugin",
    "prefpane", "qlgenerator", "rtfd",      "saver",    "scptd",         "xcodeproj"};

/// Whether a folder of this name is shown as one item.
bool isPackageName(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    return std::binary_search(bundleExtensions.begin(), bundleExtensions.end(),
                              collationKey(name.substr(dot + 1)));
}

constexpr std::array colorNames = {std::pair{std::string_view("Red"), LabelColor::Red},
                                   std::pair{std::string_view("Orange"), LabelColor::Orange},
                                   std::pair{std::string_view("Yellow"), LabelColor::Yellow},
                                   std::pair{std::string_view("Green"), LabelColor::Green},
                                   std::pair{std::string_view("Blue"), LabelColor::Blue},
                                   std::pair{std::string_view("Purple"), LabelColor::Purple},
                                   std::pair{std::string_view("Gray"), LabelColor::Gray}};

LabelColor colorNamed(std::string_view tag)
{
    for (const auto& [name, color] : colorNames) {
        if (name == tag)
            return color;
    }
    return LabelColor::None;
}

/// Reads labels until the file system reports that it has no extended attributes.
class LabelReader final
{
public:
    LabelColor read(const std::string& url)
    {
        if (!m_supported)
            return LabelColor::None;
        std::array<char, 256> tags = {};
        const ssize_t length = ::lgetxattr(url.c_str(), "user.xdg.tags", tags.data(), tags.size());
        if (length < 0) {
            m_supported = errno != ENOTSUP;
            return LabelColor::None;
        }
        return labelColorFromTags({tags.data(), static_cast<std::size_t>(length)});
    }

private:
    bool m_supported = true;
};

FileProperties propertiesOf(std::string name, FolderReader::Type type, const std::string& url,
                            LabelReader& labels)
{
    FileProperties properties;
    properties.name = std::move(name);
    properties.isDirectory = type == FolderReader::Type::Folder;
    properties.isPackage = properties.isDirectory && isPackageName(properties.name);
    // Only files and folders can have user attributes (xattr(7)).
    if (type == FolderReader::Type::Folder || type == FolderReader::Type::File)
        properties.labelColor = labels.read(url);
    return properties;
}

std::vector<FileSystemNodePointer> inDisplayOrder(std::vector<FileSystemNodePointer> nodes)
{
    struct Keyed
    {
        std::string key;
        FileSystemNodePointer node;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(nodes.size());
    for (FileSystemNodePointer& node : nodes)
        keyed.push_back({collationKey(node->name()), std::move(node)});
    std::sort(keyed.begin(), keyed.end(), [](const Keyed& a, const Keyed& b) {
        const int order = a.key.compare(b.key);
        return order != 0 ? order < 0 : a.node->name() < b.node->name();
    });
    std::transform(keyed.begin(), keyed.end(), nodes.begin(),
                   [](Keyed& entry) { return std::move(entry.node); });
    return nodes;
}

} // namespace

LabelColor labelColorFromTags(std::string_view tags)
{
    while (!tags.empty()) {
        const auto comma = tags.find(',');
        if (const LabelColor color = colorNamed(trimmed(tags.substr(0, comma))); color != LabelColor::None)
            return color;
        tags = comma == std::string_view::npos ? std::string_view() : tags.substr(comma + 1);
    }
    return LabelColor::None;
}

std::optional<FileProperties> readProperties(const std::string& url)
{
    struct stat status = {};
    if (::lstat(url.c_str(), &status) != 0)
        return {};
    std::filesystem::path path(url);
    if (!path.has_filename() && path.has_parent_path())
        path = path.parent_path();
    LabelReader labels;
    return propertiesOf(path.filename().string(), FolderReader::typeOf(status), url, labels);
}

std::optional<std::vector<FileSystemNodePointer>> listFolder(const std::string& url, bool showsHidden)
{
    auto folder = FolderReader::open(url);
    if (!folder)
        return {};
    std::string prefix = url;
    if (!prefix.ends_with('/'))
        prefix += '/';
    LabelReader labels;
    std::vector<FileSystemNodePointer> nodes;
    while (const auto entry = folder->next()) {
        if (!showsHidden && isHiddenName(entry->name()))
            continue;
        std::string itemUrl = prefix + entry->name();
        FileProperties properties = propertiesOf(entry->name(), entry->type(), itemUrl, labels);
        nodes.push_back(std::make_shared<FileSystemNode>(std::move(itemUrl), std::move(properties)));
    }
    return inDisplayOrder(std::move(nodes));
}

} // namespace luma
