// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagerecovery.h"

#include "base/files.h"
#include "base/statefolder.h"

#include <QUuid>

#include <algorithm>
#include <chrono>

namespace luma {

namespace fs = std::filesystem;

namespace {

// Writing a large page takes a moment, which a pause in typing hides.
constexpr std::chrono::seconds pause(2);
constexpr std::chrono::seconds longestWait(20);
constexpr auto extension = ".page";

fs::path folder()
{
    return stateFolder() / "unsaved";
}

} // namespace

PageRecovery::PageRecovery(std::function<UnsavedPage()> describe, QObject* parent)
    : QObject(parent), m_describe(std::move(describe))
{
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &PageRecovery::write);
}

void PageRecovery::keep()
{
    if (!m_soon.isActive())
        m_sinceFirstEdit.start();
    const auto rest = longestWait - std::chrono::milliseconds(m_sinceFirstEdit.elapsed());
    m_soon.start(std::clamp<std::chrono::milliseconds>(rest, std::chrono::milliseconds(0), pause));
}

void PageRecovery::forget()
{
    m_soon.stop();
    if (m_record.empty())
        return;
    std::error_code ignored;
    fs::remove(m_record, ignored);
    m_record.clear();
}

// The path ends with a NUL, which no path contains.
void PageRecovery::write()
{
    if (m_record.empty()) {
        if (!makePrivateFolder(folder()))
            return;
        m_record = folder() / (QUuid::createUuid().toString(QUuid::Id128).toStdString() + extension);
    }
    const UnsavedPage page = m_describe();
    (void)writeFile(m_record, page.page.native() + '\0' + page.source, 0600);
}

std::vector<UnsavedPage> PageRecovery::left()
{
    std::vector<UnsavedPage> pages;
    std::error_code error;
    for (fs::directory_iterator item(folder(), error), end; !error && item != end; item.increment(error)) {
        if (item->path().extension() != extension)
            continue;
        const auto bytes = readFile(item->path());
        const std::size_t separator = bytes ? bytes->find('\0') : std::string::npos;
        if (separator != std::string::npos)
            pages.push_back({item->path(), bytes->substr(0, separator), bytes->substr(separator + 1)});
    }
    std::sort(pages.begin(), pages.end(),
              [](const UnsavedPage& a, const UnsavedPage& b) { return a.page < b.page; });
    return pages;
}

} // namespace luma
