// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/foldermarks.h"

namespace luma {

namespace {

// Of the item in the source.
SideMark compared(const FileFacts& source, const FileFacts& destination,
                  const std::optional<PublishedFiles::Pair>& published)
{
    using Type = FileFacts::Type;
    if (source.type != destination.type)
        return SideMark::Different;
    if (source.type == Type::Link)
        return source.target == destination.target ? SideMark::None : SideMark::Different;
    if (source.type != Type::File || source.isSameFile(destination) ||
        (published && published->sent.isSameFile(source) && published->received.isSameFile(destination)))
        return SideMark::None;
    if (source.time == destination.time)
        return SideMark::Different;
    return source.time > destination.time ? SideMark::NewerHere : SideMark::NewerThere;
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
        const std::string path = folder.empty() ? name : folder + '/' + name;
        const SideMark mark = compared(facts, other->second, published.find(path, Direction::Upload));
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
