// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/templatefiles.h"

#include "base/files.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "links/browserreports.h"
#include "links/pageplanner.h"
#include "page/picturecopy.h"
#include "page/sitefolder.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostFiles = 1000;
constexpr std::uintmax_t mostBytesInAll = std::uintmax_t{256} << 20U; // of all together
constexpr const char* newName = "Untitled.html";

struct TemplateFile
{
    std::string subpath; // below the folder of templates
    fs::path source;     // its real path
    fs::path wanted;     // in the site
    fs::path target = {};
    int number = 1;
    bool isThere = false;

    [[nodiscard]] bool isSheet() const { return webFileKind(subpath) == WebFileKind::StyleSheet; }
    void tryPlace()
    {
        target = wanted;
        if (number > 1)
            target.replace_filename(wanted.stem().native() + "-" + std::to_string(number) +
                                    wanted.extension().native());
    }
};

/// Decides where each file goes, and what style sheets and page say there.
class TemplatePlan final
{
public:
    TemplatePlan(const PageTemplate& from, const fs::path& site)
        : m_from(from),
          m_site(site),
          m_pagePath(from.page.lexically_relative(from.folder).native()),
          m_folder(site / newName, site)
    {}

    Result<void> make();
    Result<std::string> bytesAt(const std::string& subpath, const std::string& newPath) const;
    [[nodiscard]] Result<std::string> page() const { return bytesAt(m_pagePath, newName); }
    [[nodiscard]] const std::vector<TemplateFile>& files() const { return m_files; }
    Result<std::string> sheet(const TemplateFile& file) const
    {
        return bytesAt(file.subpath, sitePath(file.target));
    }

private:
    Result<void> addFiles();
    Result<bool> settle(TemplateFile& file);
    [[nodiscard]] Result<bool> isEqual(const TemplateFile& file) const;
    [[nodiscard]] bool isTaken(const TemplateFile& file) const;
    [[nodiscard]] std::string sitePath(const fs::path& target) const
    {
        return target.lexically_relative(m_site).native();
    }

    const PageTemplate& m_from;
    const fs::path& m_site;
    std::string m_pagePath;
    SiteFolder m_folder;
    std::vector<TemplateFile> m_files;
};

// What a style sheet says depends on where all others go, so places are tried until each file fits its own.
Result<void> TemplatePlan::make()
{
    if (auto added = addFiles(); !added)
        return added;
    for (TemplateFile& file : m_files)
        file.tryPlace();
    for (bool isSettled = false; !isSettled;) {
        isSettled = true;
        for (TemplateFile& file : m_files) {
            const auto fits = settle(file);
            if (!fits)
                return fits.error();
            isSettled = isSettled && *fits;
        }
    }
    return {};
}

Result<void> TemplatePlan::addFiles()
{
    const auto needed = filesOfTemplate(m_from);
    if (!needed)
        return needed.error();
    if (needed->size() > mostFiles)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "The template uses too many files: %1"),
                              {std::to_string(needed->size())})};
    const SiteFolder templates(m_from.page, m_from.folder);
    std::uintmax_t size = 0;
    for (const fs::path& file : *needed) {
        const auto real = templates.realPath(file);
        if (!real)
            return Error{
                userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: leads out of the folder of templates"),
                         {file.native()})};
        std::error_code error;
        size += fs::file_size(*real, error);
        if (error)
            return Error{file.string() + ": " + error.message()};
        const std::string subpath = file.lexically_relative(m_from.folder).native();
        const bool isBeside = folderPart(subpath).empty();
        m_files.push_back({subpath, *real, (isBeside ? folderForFile(file, m_folder) : m_site) / subpath});
    }
    if (size > mostBytesInAll)
        return Error{userText(
            QT_TRANSLATE_NOOP("luma::Engines", "The files that the template uses are too large: %1 MB"),
            {std::to_string(size >> 20U)})};
    return {};
}

Result<bool> TemplatePlan::settle(TemplateFile& file)
{
    auto equal = itemExists(file.target) ? isEqual(file) : Result<bool>(false);
    if (!equal)
        return equal;
    file.isThere = *equal;
    if (!isTaken(file) && (file.isThere || !itemExists(file.target)))
        return true;
    ++file.number;
    file.tryPlace();
    return false;
}

Result<bool> TemplatePlan::isEqual(const TemplateFile& file) const
{
    if (!file.isSheet())
        return holdsSameBytes(file.source, file.target);
    const auto bytes = sheet(file);
    if (!bytes)
        return bytes.error();
    const auto there = readFile(file.target);
    return there && *there == *bytes;
}

bool TemplatePlan::isTaken(const TemplateFile& file) const
{
    return file.target == m_site / newName ||
           std::any_of(m_files.begin(), m_files.end(), [&file](const TemplateFile& other) {
               return &other < &file && other.target == file.target;
           });
}

Result<std::string> TemplatePlan::bytesAt(const std::string& subpath, const std::string& newPath) const
{
    std::vector<MovedPlaces::Item> items = {{m_pagePath, newName}};
    for (const TemplateFile& file : m_files)
        items.push_back({file.subpath, sitePath(file.target)});
    const SiteAddresses addresses;
    const MovedPlaces places(std::move(items), nullptr, WebRules());
    PagePlanner planner(addresses, places);
    planner.setRoots(m_from.folder, m_site);
    const auto bytes = planner.read((m_from.folder / subpath).native());
    if (!bytes)
        return bytes.error();
    const auto edits = planner.editsOf(*bytes, subpath, newPath);
    if (!edits)
        return Error{subpath + ": " + edits.error().text};
    return withEdits(*bytes, *edits);
}

// Makes the folders above `file`, and notes those that it made.
Result<void> makeFolders(const fs::path& file, std::vector<fs::path>& made)
{
    std::vector<fs::path> missing;
    for (fs::path folder = file.parent_path(); !itemExists(folder); folder = folder.parent_path())
        missing.push_back(folder);
    std::reverse(missing.begin(), missing.end());
    for (const fs::path& folder : missing) {
        std::error_code error;
        fs::create_directory(folder, error);
        if (error)
            return Error{folder.string() + ": " + error.message()};
        made.push_back(folder);
    }
    return {};
}

Result<void> copyOne(const TemplatePlan& plan, const TemplateFile& file, std::vector<fs::path>& made,
                     const StillWanted& stillWanted)
{
    if (auto folders = makeFolders(file.target, made); !folders)
        return folders;
    if (!file.isSheet()) {
        auto copied = copyFile(file.source, file.target, Existing::Keep, Durability::Synced, stillWanted);
        if (copied)
            made.push_back(file.target);
        return copied;
    }
    const auto bytes = plan.sheet(file);
    if (!bytes)
        return bytes.error();
    auto written = writeFile(file.target, *bytes);
    if (written)
        made.push_back(file.target);
    return written;
}

} // namespace

Result<std::vector<fs::path>> filesOfTemplate(const PageTemplate& from)
{
    const auto needed = findNeededFiles(from.folder, from.page, WebRules());
    if (!needed)
        return needed.error();
    std::vector<fs::path> files;
    for (const std::string& subpath : *needed) {
        if (from.folder / subpath != from.page)
            files.push_back(from.folder / subpath);
    }
    return files;
}

Result<CopiedFiles> copyTemplateFiles(const PageTemplate& from, const fs::path& site,
                                      const StillWanted& stillWanted)
{
    TemplatePlan plan(from, site);
    if (auto made = plan.make(); !made)
        return made.error();
    auto page = plan.page();
    if (!page)
        return page.error();
    CopiedFiles copies{*std::move(page), {}, {}};
    for (const TemplateFile& file : plan.files()) {
        if (file.isThere) {
            copies.found.push_back(file.target);
            continue;
        }
        if (auto copied = copyOne(plan, file, copies.made, stillWanted); !copied) {
            removeMade(copies.made);
            return copied.error();
        }
    }
    return copies;
}

void removeMade(const std::vector<fs::path>& made)
{
    for (auto item = made.rbegin(); item != made.rend(); ++item) {
        std::error_code ignored;
        fs::remove(*item, ignored);
    }
}

} // namespace luma
