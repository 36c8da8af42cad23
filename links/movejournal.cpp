// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/movejournal.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/folderreader.h"
#include "base/statefolder.h"
#include "base/usertext.h"
#include "links/journaltext.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view runningState = ".running";
constexpr std::string_view doneState = ".done";
constexpr std::size_t mostDone = 20;

fs::path journalFolder(const fs::path& site)
{
    std::error_code error;
    const fs::path real = fs::canonical(site, error);
    return stateFolder() / "moves" / hashOfFile((error ? site : real).native()).substr(0, 32);
}

// The numbers of the entries in this state, in their order.
std::vector<std::uint64_t> numbersIn(const fs::path& folder, std::string_view state)
{
    std::vector<std::uint64_t> numbers;
    auto entries = FolderReader::open(folder.native());
    while (entries) {
        const auto entry = entries->next();
        if (!entry)
            break;
        const std::string_view name = entry->name();
        std::uint64_t number = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (error == std::errc() && name.substr(static_cast<std::size_t>(end - name.data())) == state)
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::optional<MoveJournal::Entry> readEntry(const fs::path& file, std::uint64_t number)
{
    const auto bytes = readFile(file);
    std::size_t end = 0;
    auto job = bytes ? parseJob(*bytes, end) : std::nullopt;
    if (!job)
        return std::nullopt;
    MoveJournal::Entry entry{number, *std::move(job), {}};
    JournalReader reader(std::string_view(*bytes).substr(end));
    for (std::string note = reader.text(); reader.isGood(); note = reader.text())
        entry.notes.push_back(std::move(note));
    // A note that a crash cut off was never made, and the next one must not follow its rest.
    end += reader.place();
    if (end < bytes->size() && ::truncate(file.c_str(), static_cast<off_t>(end)) != 0)
        return std::nullopt;
    return entry;
}

// What a crash left of a job that was being written down.
void removeTemporaries(const fs::path& folder)
{
    std::vector<fs::path> found;
    auto entries = FolderReader::open(folder.native());
    while (entries) {
        const auto entry = entries->next();
        if (!entry)
            break;
        if (std::string_view(entry->name()).starts_with(".luma-"))
            found.push_back(folder / entry->name());
    }
    for (const fs::path& file : found)
        (void)removeItem(file);
}

} // namespace

Result<MoveJournal> MoveJournal::open(const fs::path& site)
{
    fs::path folder = journalFolder(site);
    if (auto made = makePrivateFolder(folder); !made)
        return made.error();
    const fs::path path = folder / "lock";
    FileDescriptor lock(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!lock)
        return systemError(path, errno);
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK
                   ? Error{userText(QT_TRANSLATE_NOOP("luma::Engines",
                                                      "%1: files are being moved here by another program"),
                                    {site.native()}),
                           std::errc::device_or_resource_busy}
                   : systemError(path, errno);
    removeTemporaries(folder);
    return MoveJournal(std::move(folder), std::move(lock));
}

bool MoveJournal::isPending(const fs::path& site)
{
    return !numbersIn(journalFolder(site), runningState).empty();
}

bool MoveJournal::hasDone(const fs::path& site)
{
    return !numbersIn(journalFolder(site), doneState).empty();
}

fs::path MoveJournal::fileOf(std::uint64_t number, std::string_view state) const
{
    return m_folder / (std::to_string(number) + std::string(state));
}

std::vector<MoveJournal::Entry> MoveJournal::running(std::vector<fs::path>& damaged)
{
    std::vector<Entry> found;
    for (const std::uint64_t number : numbersIn(m_folder, runningState)) {
        const fs::path file = fileOf(number, runningState);
        if (auto entry = readEntry(file, number)) {
            found.push_back(*std::move(entry));
            continue;
        }
        damaged.emplace_back(file.native() + ".damaged");
        std::error_code error;
        fs::rename(file, damaged.back(), error);
    }
    return found;
}

std::optional<MoveJournal::Entry> MoveJournal::lastDone() const
{
    const std::vector<std::uint64_t> numbers = numbersIn(m_folder, doneState);
    for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) {
        if (auto entry = readEntry(fileOf(*number, doneState), *number))
            return entry;
    }
    return std::nullopt;
}

Result<std::uint64_t> MoveJournal::begin(const MoveJob& job, std::string_view firstNote)
{
    std::uint64_t last = job.undoes;
    for (const std::string_view state : {runningState, doneState}) {
        if (const auto numbers = numbersIn(m_folder, state); !numbers.empty())
            last = std::max(last, numbers.back());
    }
    std::string bytes = serialized(job);
    if (!firstNote.empty())
        bytes += JournalWriter().text(firstNote).take();
    if (auto written = writeFile(fileOf(last + 1, runningState), bytes, S_IRUSR | S_IWUSR); !written)
        return written.error();
    syncFolder(m_folder);
    return last + 1;
}

Result<void> MoveJournal::note(std::uint64_t number, std::string_view text)
{
    const fs::path file = fileOf(number, runningState);
    const auto opened = openFile(file.native(), O_WRONLY | O_APPEND);
    if (!opened)
        return opened.error();
    const std::string bytes = JournalWriter().text(text).take();
    const off_t before = ::lseek(opened->get(), 0, SEEK_END);
    const ssize_t written = ::write(opened->get(), bytes.data(), bytes.size());
    if (written == static_cast<ssize_t>(bytes.size()) && ::fdatasync(opened->get()) == 0)
        return {};
    Error failed = systemError(file, written < 0 ? errno : ENOSPC);
    if (::ftruncate(opened->get(), before) != 0)
        failed.text = userText(
            QT_TRANSLATE_NOOP("luma::Engines", "%1, and its journal can't be used any more"), {failed.text});
    return failed;
}

Result<void> MoveJournal::finish(std::uint64_t number)
{
    const fs::path file = fileOf(number, runningState);
    if (::rename(file.c_str(), fileOf(number, doneState).c_str()) != 0)
        return systemError(file, errno);
    syncFolder(m_folder);
    const std::vector<std::uint64_t> done = numbersIn(m_folder, doneState);
    for (std::size_t i = 0; i + mostDone < done.size(); ++i)
        forgetDone(done[i]);
    return {};
}

void MoveJournal::forgetRunning(std::uint64_t number)
{
    std::error_code error;
    fs::remove(fileOf(number, runningState), error);
    syncFolder(m_folder);
}

void MoveJournal::forgetDone(std::uint64_t number)
{
    std::error_code error;
    fs::remove(fileOf(number, doneState), error);
    syncFolder(m_folder);
}

} // namespace luma
