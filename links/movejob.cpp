// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/movejob.h"

#include "base/folderreader.h"
#include "base/usertext.h"
#include "links/journaltext.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view format = "luma move 3";

constexpr auto lastKind = static_cast<std::uint64_t>(MoveJob::Kind::Text);

constexpr std::string_view digits = "0123456789abcdefghijklmnopqrstuvwxyz";

std::string threeDigits(std::size_t number)
{
    std::string text(3, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit) {
        *digit = digits[number % digits.size()];
        number /= digits.size();
    }
    return text;
}

std::string newTag()
{
    return threeDigits(std::random_device()());
}

// Notes `original` and all below it as what will be at `copy`.
void addCopies(std::vector<CopiedItem>& copies, const fs::path& original, const fs::path& copy,
               const std::map<fs::path, std::string>& marks)
{
    struct stat status = {};
    if (::lstat(original.c_str(), &status) != 0)
        return;
    CopiedItem item{
        copy, CopiedItem::Type::File, static_cast<std::uint64_t>(status.st_size), status.st_mtim, {}};
    std::error_code error;
    if (S_ISLNK(status.st_mode)) {
        item.type = CopiedItem::Type::Link;
        item.mark = fs::read_symlink(original, error).native();
    } else if (S_ISDIR(status.st_mode)) {
        item.type = CopiedItem::Type::Folder;
    }
    if (const auto mark = marks.find(copy); mark != marks.end())
        item.mark = mark->second;
    copies.push_back(item);
    if (item.type != CopiedItem::Type::Folder)
        return;
    if (auto folder = FolderReader::open(original.native())) {
        while (const auto entry = folder->next())
            addCopies(copies, original / entry->name(), copy / entry->name(), marks);
    }
}

PageRewrite inverseOf(const PageRewrite& page)
{
    PageRewrite inverse{page.oldPage, page.page, {}, page.newHash, page.oldHash, page.modified, page.twin};
    std::size_t grown = 0;
    std::size_t shrunk = 0;
    for (const LinkEdit& edit : page.edits) {
        inverse.edits.push_back(
            {edit.begin + grown - shrunk, edit.after, edit.before, edit.line, edit.newLink, edit.oldLink});
        grown += edit.after.size();
        shrunk += edit.before.size();
    }
    return inverse;
}

void write(JournalWriter& writer, const PageRewrite& page)
{
    writer.text(page.page.native()).text(page.oldPage.native()).text(page.oldHash).text(page.newHash);
    writer.time(page.modified).number(page.twin ? *page.twin + 1 : 0).number(page.edits.size());
    for (const LinkEdit& edit : page.edits)
        writer.number(edit.begin).text(edit.before).text(edit.after);
}

// `index`: its own.
PageRewrite readPage(JournalReader& reader, std::size_t index)
{
    PageRewrite page;
    page.page = reader.text();
    page.oldPage = reader.text();
    page.oldHash = reader.text();
    page.newHash = reader.text();
    page.modified = reader.time();
    if (const std::uint64_t twin = reader.number(); twin > 0 && twin <= index)
        page.twin = twin - 1;
    for (std::uint64_t count = reader.number(); count > 0 && reader.isGood(); --count) {
        LinkEdit edit;
        edit.begin = reader.number();
        edit.before = reader.text();
        edit.after = reader.text();
        page.edits.push_back(std::move(edit));
    }
    return page;
}

// The new name or, where that stays, the folder.
std::string shortPlace(const MovedItem& item)
{
    const fs::path name = item.to.filename();
    return (item.from.filename() == name ? item.to.parent_path().filename() / name : name).native();
}

MoveJob::Kind kindOf(const LinkPlan& plan)
{
    const MoveRequest& request = plan.request;
    if (plan.text)
        return MoveJob::Kind::Text;
    if (request.itemsStay())
        return MoveJob::Kind::Links;
    return request.operation == MoveOperation::Copy ? MoveJob::Kind::Copy : MoveJob::Kind::Move;
}

} // namespace

MoveJob jobOf(const LinkPlan& plan)
{
    MoveJob job;
    job.kind = kindOf(plan);
    job.title = plan.text ? plan.text->title : std::string();
    job.tag = newTag();
    job.items = plan.request.items;
    job.pages = plan.pages;
    job.symlinks = plan.symlinks;
    if (job.kind == MoveJob::Kind::Copy) {
        std::map<fs::path, std::string> marks;
        for (const PageRewrite& page : job.pages)
            marks[page.page] = page.newHash;
        for (const SymlinkChange& change : job.symlinks)
            marks[change.link] = change.after;
        for (const MovedItem& item : job.items)
            addCopies(job.copies, item.from, item.to, marks);
    }
    return job;
}

MoveJob inverseOf(const MoveJob& job)
{
    MoveJob inverse;
    inverse.tag = newTag();
    if (job.kind == MoveJob::Kind::RemoveCopies)
        return inverse;
    if (job.kind == MoveJob::Kind::Copy) {
        inverse.kind = MoveJob::Kind::RemoveCopies;
        inverse.items = job.items;
        inverse.copies = job.copies;
        return inverse;
    }
    inverse.kind = job.kind;
    inverse.title = job.title;
    for (auto item = job.items.rbegin(); item != job.items.rend(); ++item)
        inverse.items.push_back({item->to, item->from});
    for (const PageRewrite& page : job.pages)
        inverse.pages.push_back(inverseOf(page));
    for (const auto& [link, oldLink, before, after] : job.symlinks)
        inverse.symlinks.push_back({oldLink, link, after, before});
    inverse.restoresTimes = !job.restoresTimes;
    return inverse;
}

std::string titleOf(const LinkPlan& plan)
{
    MoveJob job;
    job.kind = kindOf(plan);
    job.title = plan.text ? plan.text->title : std::string();
    job.items = plan.request.items;
    return titleOf(job);
}

std::string titleOf(const MoveJob& job)
{
    if (job.kind == MoveJob::Kind::Text)
        return job.title;
    if (job.items.empty())
        return userText(QT_TRANSLATE_NOOP("luma::Engines", "Move"));
    const MovedItem& first = job.items.front();
    const bool isOne = job.items.size() == 1;
    const std::string what =
        isOne ? first.from.filename().native()
              : userText(QT_TRANSLATE_NOOP("luma::Engines", "%1 items"), {std::to_string(job.items.size())});
    const bool isRename = isOne && first.from.parent_path() == first.to.parent_path();
    const std::string where = isRename ? first.to.filename().native() : first.to.parent_path().native();
    if (job.kind == MoveJob::Kind::RemoveCopies)
        return userText(QT_TRANSLATE_NOOP("luma::Engines", "Remove the copy of %1"), {what});
    if (job.kind == MoveJob::Kind::Links)
        return isOne ? userText(QT_TRANSLATE_NOOP("luma::Engines", "Change links to %1 to %2"),
                                {what, shortPlace(first)})
                     : userText(QT_TRANSLATE_NOOP("luma::Engines", "Change links to %1"), {what});
    if (job.kind == MoveJob::Kind::Copy)
        return userText(QT_TRANSLATE_NOOP("luma::Engines", "Copy %1 to %2"), {what, where});
    return isRename ? userText(QT_TRANSLATE_NOOP("luma::Engines", "Rename %1 to %2"), {what, where})
                    : userText(QT_TRANSLATE_NOOP("luma::Engines", "Move %1 to %2"), {what, where});
}

std::string temporaryName(const MoveJob& job, std::size_t index)
{
    return ".luma-" + job.tag + threeDigits(index);
}

std::string serialized(const MoveJob& job)
{
    JournalWriter writer;
    writer.text(format).number(static_cast<std::uint64_t>(job.kind)).text(job.tag).number(job.undoes);
    writer.number(job.restoresTimes ? 1 : 0).number(job.items.size());
    for (const MovedItem& item : job.items)
        writer.text(item.from.native()).text(item.to.native());
    writer.number(job.pages.size());
    for (const PageRewrite& page : job.pages)
        write(writer, page);
    writer.number(job.symlinks.size());
    for (const auto& [link, oldLink, before, after] : job.symlinks)
        writer.text(link.native()).text(oldLink.native()).text(before).text(after);
    writer.number(job.copies.size());
    for (const CopiedItem& item : job.copies)
        writer.text(item.path.native())
            .number(static_cast<std::uint64_t>(item.type))
            .number(item.size)
            .time(item.modified)
            .text(item.mark);
    if (job.kind == MoveJob::Kind::Text)
        writer.text(job.title);
    return writer.text("end").take();
}

std::optional<MoveJob> parseJob(std::string_view bytes, std::size_t& end)
{
    JournalReader reader(bytes);
    if (reader.text() != format)
        return std::nullopt;
    MoveJob job;
    const std::uint64_t kind = reader.number();
    job.kind = static_cast<MoveJob::Kind>(std::min(kind, lastKind));
    job.tag = reader.text();
    job.undoes = reader.number();
    job.restoresTimes = reader.number() != 0;
    for (std::uint64_t count = reader.number(); count > 0 && reader.isGood(); --count) {
        const std::string from = reader.text();
        job.items.push_back({from, reader.text()});
    }
    for (std::uint64_t count = reader.number(); count > 0 && reader.isGood(); --count)
        job.pages.push_back(readPage(reader, job.pages.size()));
    for (std::uint64_t count = reader.number(); count > 0 && reader.isGood(); --count) {
        SymlinkChange change;
        change.link = reader.text();
        change.oldLink = reader.text();
        change.before = reader.text();
        change.after = reader.text();
        job.symlinks.push_back(std::move(change));
    }
    for (std::uint64_t count = reader.number(); count > 0 && reader.isGood(); --count) {
        CopiedItem item;
        item.path = reader.text();
        item.type = static_cast<CopiedItem::Type>(std::min<std::uint64_t>(reader.number(), 2));
        item.size = reader.number();
        item.modified = reader.time();
        item.mark = reader.text();
        job.copies.push_back(std::move(item));
    }
    if (job.kind == MoveJob::Kind::Text)
        job.title = reader.text();
    const bool isWhole = reader.text() == "end" && reader.isGood() && kind <= lastKind && job.tag.size() == 3;
    end = reader.place();
    return isWhole ? std::optional(std::move(job)) : std::nullopt;
}

} // namespace luma
