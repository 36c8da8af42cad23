// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/templatecopies.h"

#include "base/mainhop.h"
#include "base/trash.h"
#include "links/filestamp.h"

#include <QPointer>

#include <map>
#include <memory>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

/// A file or folder that a page brought along which isn't saved yet.
struct Unsaved
{
    FileStamp stamp;
    int pages = 0; // that have it
};

// Of all windows.
std::map<fs::path, Unsaved>& unsavedFiles()
{
    static std::map<fs::path, Unsaved> files;
    return files;
}

using Discarded = std::vector<std::pair<fs::path, FileStamp>>;

// What is in a folder comes behind it.
void moveToTrashUnlessChanged(const Discarded& files)
{
    for (auto file = files.rbegin(); file != files.rend(); ++file) {
        std::error_code ignored;
        if (fs::is_directory(file->first, ignored))
            fs::remove(file->first, ignored); // only if it is empty
        else if (FileStamp::of(file->first.native(), 0) == file->second)
            (void)moveToTrash(file->first); // a server has none: it stays
    }
}

} // namespace

TemplateCopies::~TemplateCopies()
{
    if (m_job)
        m_job->cancel();
    auto discarded = std::make_shared<Discarded>();
    for (const fs::path& file : m_files) {
        const auto unsaved = unsavedFiles().find(file);
        if (unsaved == unsavedFiles().end() || --unsaved->second.pages > 0)
            continue;
        discarded->emplace_back(file, unsaved->second.stamp);
        unsavedFiles().erase(unsaved);
    }
    if (!discarded->empty())
        luma::start(std::make_shared<WorkItem>(),
                    [discarded](const WorkItem&) { moveToTrashUnlessChanged(*discarded); });
}

void TemplateCopies::start(const PageTemplate& from, const fs::path& site)
{
    m_job = std::make_shared<WorkItem>();
    luma::start(m_job, [self = QPointer(this), from, site](const WorkItem& item) {
        const auto files = copyTemplateFiles(from, site, [&item] { return !item.isCancelled(); });
        const bool isTaken = onMain(self, [&files](TemplateCopies& copies) {
            if (files)
                copies.take(*files);
            else
                emit copies.failed(QString::fromStdString(files.error().text));
        });
        if (files && !isTaken)
            removeMade(files->made);
    });
}

void TemplateCopies::take(const CopiedFiles& files)
{
    for (const fs::path& file : files.made) {
        unsavedFiles()[file] = {FileStamp::of(file.native(), 0), 1};
        m_files.insert(file);
    }
    for (fs::path file : files.found) {
        for (auto unsaved = unsavedFiles().find(file); unsaved != unsavedFiles().end();
             unsaved = unsavedFiles().find(file = file.parent_path()))
            unsaved->second.pages += m_files.insert(file).second ? 1 : 0;
    }
    emit copied(files.page);
}

void TemplateCopies::keep()
{
    for (const fs::path& file : std::exchange(m_files, {}))
        unsavedFiles().erase(file);
}

} // namespace luma
