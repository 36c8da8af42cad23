// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QString>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The colour label of an item.
enum class LabelColor { None, Red, Orange, Yellow, Green, Blue, Purple, Gray };

/// By the custom of Unix, names that begin with a dot are hidden.
inline bool isHiddenName(std::string_view name)
{
    return name.starts_with('.');
}

/// The attributes of an item, read once when its node is created.
struct FileProperties
{
    std::string name;
    bool isDirectory = false;
    bool isPackage = false;
    LabelColor labelColor = LabelColor::None;
};

class FileSystemNode;
using FileSystemNodePointer = std::shared_ptr<FileSystemNode>;

/// One item of the file tree that a pane shows. Owns its children, which are listed on first use and kept
/// until `childrenDirty` is set; has no link to its parent and never watches the disk. A symbolic link is a
/// leaf, never the folder it points to, so the tree has no cycles. Two nodes of one file are different
/// objects; compare `url` to find a file again. Main thread only, once it is in a tree.
class FileSystemNode final
{
public:
    /// Reads the attributes of the item at `url`; there are none if it does not exist.
    explicit FileSystemNode(const std::filesystem::path& url);
    /// With attributes that a listing has already read.
    FileSystemNode(std::string url, FileProperties properties);

    [[nodiscard]] std::filesystem::path url() const { return m_url; }
    [[nodiscard]] const std::optional<FileProperties>& fileProperties() const { return m_fileProperties; }

    /// The name's bytes; empty if the attributes could not be read.
    [[nodiscard]] const std::string& name() const;
    /// The name as the screen shows it (see displayText).
    [[nodiscard]] QString displayName() const;
    /// The name for editing: its own characters, as long as it is UTF-8.
    [[nodiscard]] QString editedName() const;
    /// The item's path under another name in its folder. Error: as setDisplayName(), but for a name that is taken.
    [[nodiscard]] Result<std::filesystem::path> pathNamed(const QString& newName) const;
    /// Renames the item on disk within its folder. Fails, and changes neither node nor disk, if the name is
    /// empty, is "." or "..", contains a slash or a null character, or is taken.
    Result<void> setDisplayName(const QString& newName);

    [[nodiscard]] bool isDirectory() const { return m_fileProperties && m_fileProperties->isDirectory; }
    [[nodiscard]] bool isPackage() const { return m_fileProperties && m_fileProperties->isPackage; }
    /// True for everything that does not open as a folder.
    [[nodiscard]] bool isLeaf() const { return !isDirectory() || isPackage(); }
    /// Makes a package a folder like any other.
    void openPackage();
    [[nodiscard]] LabelColor labelColor() const;

    /// The items of the folder, without hidden ones unless `showsHidden` is set, ordered by name ignoring letter case; names that differ in
    /// case only are ordered by their bytes. A read error ends the list without a message.
    const std::vector<FileSystemNodePointer>& children();
    /// Takes a listing that was made elsewhere; none if the folder could not be opened.
    void setChildren(std::optional<std::vector<FileSystemNodePointer>> listed);
    /// True if the last listing could not open the folder.
    [[nodiscard]] bool isUnreadable() const { return m_unreadable; }

    /// Set it to make the next children() list the folder again.
    bool childrenDirty = true;
    /// Counts from the next listing on.
    bool showsHidden = false;

private:
    std::string m_url;
    std::optional<FileProperties> m_fileProperties;
    std::vector<FileSystemNodePointer> m_children;
    bool m_unreadable = false;
};

} // namespace luma
