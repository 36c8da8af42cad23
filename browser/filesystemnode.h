// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "browser/labelcolor.h"

#include <QString>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace luma {

/// What is read of an item, once, when its node is made.
struct FileProperties
{
    std::string name;
    bool isDirectory = false;
    bool isPackage = false;
    LabelColor labelColor = LabelColor::None;
};

class FileSystemNode;
using FileSystemNodePointer = std::shared_ptr<FileSystemNode>;

/// One item of the file tree that a pane shows. Owns its children, which are listed when they are first asked
/// for and kept until `childrenDirty` is set; knows no parent and never watches the disk. A symbolic link is
/// an item of its own, never the folder it points to, so a tree holds no circles. Identity is the object's;
/// to find a file again compare `url`. Main thread only.
class FileSystemNode final
{
public:
    /// Reads the attributes of the item at `url`; they stay absent when there is none.
    explicit FileSystemNode(const std::filesystem::path& url);
    /// The same with attributes that a listing has read already.
    FileSystemNode(std::string url, FileProperties properties);

    [[nodiscard]] std::filesystem::path url() const { return m_url; }
    [[nodiscard]] const std::optional<FileProperties>& fileProperties() const { return m_fileProperties; }

    /// The name's bytes; empty when the attributes could not be read.
    [[nodiscard]] const std::string& name() const;
    /// The name as the screen shows it (see displayText).
    [[nodiscard]] QString displayName() const;
    /// Renames the item on disk within its folder. Refused, with the node and the disk left as they were,
    /// when the name is empty, is "." or "..", holds a slash, or is taken.
    Result<void> setDisplayName(const QString& newName);

    [[nodiscard]] bool isDirectory() const { return m_fileProperties && m_fileProperties->isDirectory; }
    [[nodiscard]] bool isPackage() const { return m_fileProperties && m_fileProperties->isPackage; }
    /// True for everything that is not opened as a folder.
    [[nodiscard]] bool isLeaf() const { return !isDirectory() || isPackage(); }
    [[nodiscard]] LabelColor labelColor() const;

    /// The items of the folder but for hidden ones, ordered by name with letter case ignored; names that are
    /// then equal stand in the order of their bytes. What can't be read ends the list without a message.
    const std::vector<FileSystemNodePointer>& children();
    /// True when the last listing could not open the folder.
    [[nodiscard]] bool isUnreadable() const { return m_unreadable; }

    /// Set to have the next children() list the folder again.
    bool childrenDirty = true;

private:
    std::string m_url;
    std::optional<FileProperties> m_fileProperties;
    std::vector<FileSystemNodePointer> m_children;
    bool m_unreadable = false;
};

} // namespace luma
