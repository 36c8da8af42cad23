// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/filesystemnode.h"

#include "base/files.h"
#include "base/usertext.h"
#include "base/utf8.h"
#include "browser/displaytext.h"
#include "browser/folderlisting.h"

namespace luma {

FileSystemNode::FileSystemNode(const std::filesystem::path& url)
    : m_url(url.string()), m_fileProperties(readProperties(m_url))
{}

FileSystemNode::FileSystemNode(std::string url, FileProperties properties)
    : m_url(std::move(url)), m_fileProperties(std::move(properties))
{}

const std::string& FileSystemNode::name() const
{
    static const std::string none;
    return m_fileProperties ? m_fileProperties->name : none;
}

QString FileSystemNode::displayName() const
{
    return displayText(name());
}

QString FileSystemNode::editedName() const
{
    return isValidUtf8(name()) ? QString::fromStdString(name()) : displayName();
}

void FileSystemNode::openPackage()
{
    if (m_fileProperties)
        m_fileProperties->isPackage = false;
}

LabelColor FileSystemNode::labelColor() const
{
    return m_fileProperties ? m_fileProperties->labelColor : LabelColor::None;
}

Result<std::filesystem::path> FileSystemNode::pathNamed(const QString& newName) const
{
    const std::string bytes = newName.toStdString();
    if (bytes.empty() || bytes == "." || bytes == ".." || bytes.find('/') != std::string::npos ||
        bytes.find('\0') != std::string::npos)
        return Error{
            userText(QT_TRANSLATE_NOOP("luma::Engines", "\"%1\" cannot be the name of a file"), {bytes})};
    return url().parent_path() / bytes;
}

Result<void> FileSystemNode::setDisplayName(const QString& newName)
{
    const auto target = pathNamed(newName);
    if (!target)
        return target.error();
    if (auto moved = moveItem(url(), *target); !moved)
        return moved;
    if (m_fileProperties)
        m_fileProperties->name = target->filename().native();
    m_url = target->string();
    return {};
}

const std::vector<FileSystemNodePointer>& FileSystemNode::children()
{
    if (childrenDirty)
        setChildren(listFolder(m_url, showsHidden));
    return m_children;
}

void FileSystemNode::setChildren(std::optional<std::vector<FileSystemNodePointer>> listed)
{
    m_unreadable = !listed;
    m_children = listed ? std::move(*listed) : std::vector<FileSystemNodePointer>();
    childrenDirty = false;
}

} // namespace luma
