// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/foldermarks.h"

#include "site/syncrow.h"

namespace luma {

namespace {

// Of the item in the source.
SideMark compared(const FileFacts& source, const FileFacts& destination, const std::string& path,
                  const PublishedFiles& published)
{
    if (source.type != destination.type)
        return SideMark::Different;
    if (source.type == FileFacts::Type::Folder)
        return SideMark::None;
    const bool isUploaded = isListed(source, destination, published.find(path, Direction::Upload));
    const bool isDownloaded = isListed(destination, source, published.find(path, Direction::Download));
    if (isUploaded && isDownloaded)
        return SideMark::Different;
    if (isUploaded)
        return SideMark::NewerHere;
    return isDownloaded ? SideMark::NewerThere : SideMark::None;
}

SideMark mirrored(SideMark mark)
{
    if (mark == SideMark::NewerHere)
        return SideMark::NewerThere;
    return mark == SideMark::NewerThere ? SideMark::NewerHere : mark;
}

} // namespace

FolderMarks marksOf(const std::string& folder, const ComparedSide::Items& source,
                    const ComparedSide::Items& destination, const PublishedFiles& published,
                    const IgnoredNames& ignored)
{
    FolderMarks marks;
    const auto counts = [&](const std::string& name, const FileFacts& facts) {
        return facts.exists() && !ignored.match(folder, name.c_str(), facts.type == FileFacts::Type::Folder);
    };
    for (const auto& [name, facts] : source) {
        if (!counts(name, facts))
            continue;
        const auto other = destination.find(name);
        if (other == destination.end() || !other->second.exists()) {
            marks.source[name] = SideMark::OnlyHere;
            continue;
        }
        std::string path = folder;
        path.append(folder.empty() ? "" : "/").append(name);
        const SideMark mark = compared(facts, other->second, path, published);
        if (mark != SideMark::None) {
            marks.source[name] = mark;
            marks.destination[name] = mirrored(mark);
        }
    }
    for (const auto& [name, facts] : destination) {
        const auto other = source.find(name);
        if (counts(name, facts) && (other == source.end() || !other->second.exists()))
            marks.destination[name] = SideMark::OnlyHere;
    }
    return marks;
}

} // namespace luma
