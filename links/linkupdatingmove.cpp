// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkupdatingmove.h"

#include "base/files.h"
#include "base/orderedwork.h"
#include "base/pathbelow.h"
#include "base/usertext.h"
#include "links/rewritepage.h"
#include "links/sitetree.h"
#include "links/webrules.h"

#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

// Without slashes at the end, so that the path has a last component.
fs::path trimmed(const fs::path& path)
{
    std::string text = path.native();
    while (text.size() > 1 && text.ends_with('/'))
        text.pop_back();
    return text;
}

// A symbolic link into the site: the page is rewritten under its real path.
bool isLinkIntoSite(const SiteTree& tree, SiteTree::Id page)
{
    if (tree.type(page) != SiteTree::Type::LinkToFile)
        return false;
    std::error_code error;
    const fs::path real = fs::canonical(tree.path(page), error);
    const fs::path root = fs::canonical(tree.rootPath(), error);
    return !error && isAtOrBelow(real.native(), root.native());
}

// Gives the new source of one page.
class PageUpdate final
{
public:
    PageUpdate(const LinkMapping& mapping, const fs::path& page, bool rebase)
        : m_mapping(mapping),
          m_folder(page.parent_path()),
          m_oldFolder(rebase ? mapping.oldFolderOf(page) : std::nullopt)
    {}

    std::string operator()(std::string source) const
    {
        if (!m_oldFolder && !m_mapping.mayConcern(source))
            return source;
        const auto page = parsePage(source);
        if (!page)
            return source;
        return withChangedLinks(*page, m_oldFolder ? m_mapping.changesOfMoved(*page, *m_oldFolder, m_folder)
                                                   : m_mapping.changesOf(*page, m_folder));
    }

private:
    const LinkMapping& m_mapping;
    fs::path m_folder;
    std::optional<fs::path> m_oldFolder;
};

} // namespace

LinkUpdatingMove::LinkUpdatingMove(const fs::path& site, Callbacks callbacks)
    : m_site(trimmed(site)), m_callbacks(std::move(callbacks))
{}

void LinkUpdatingMove::log(const std::string& text) const
{
    if (m_callbacks.log)
        m_callbacks.log(text);
}

void LinkUpdatingMove::report(MoveOutcome& outcome, MoveProblem problem) const
{
    outcome.problems.push_back(std::move(problem));
    if (m_callbacks.problem)
        m_callbacks.problem(outcome.problems.back());
}

bool LinkUpdatingMove::moveItemTo(MoveOutcome& outcome, MoveOperation operation, const fs::path& item,
                                  const fs::path& target)
{
    const std::string name = target.filename().native();
    bool clash = false;
    // Remains if the operation is dropped.
    Result<void> done = Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1: not moved"), {item.native()})};
    const auto act = [&] {
        clash = itemExists(target);
        if (!clash)
            done = operation == MoveOperation::Copy ? copyItem(item, target, m_callbacks.stillWanted)
                                                    : moveItem(item, target);
        if (!clash && done && operation == MoveOperation::Move && m_callbacks.itemMoved)
            m_callbacks.itemMoved({item, target});
    };
    if (m_callbacks.fileOperation)
        m_callbacks.fileOperation(act);
    else
        act();
    if (clash)
        report(outcome,
               {MoveProblem::Kind::Clash, target,
                userText(QT_TRANSLATE_NOOP("luma::Engines", "File %1 exists, not overwritten"), {name})});
    else if (!done)
        report(outcome, {MoveProblem::Kind::NotMoved, item, done.error().text});
    else
        outcome.moved.push_back({item, target});
    return !clash && done;
}

MoveOutcome LinkUpdatingMove::run(MoveOperation operation, const std::vector<fs::path>& items,
                                  const fs::path& folder)
{
    MoveOutcome outcome;
    for (const fs::path& path : items) {
        if (!isWanted(m_callbacks.stillWanted))
            break;
        const fs::path item = trimmed(path);
        if (moveItemTo(outcome, operation, item, trimmed(folder) / item.filename()))
            log(userText(QT_TRANSLATE_NOOP("luma::Engines", "Updating links to: %1"),
                         {item.filename().native()}) +
                "\n\n");
    }
    outcome.complete = isWanted(m_callbacks.stillWanted);
    updateLinks(outcome, MovedPages::Rebased);
    if (operation == MoveOperation::Copy)
        outcome.links.reset();
    log('\n' + userText(QT_TRANSLATE_NOOP("luma::Engines", "Done")));
    return outcome;
}

MoveOutcome LinkUpdatingMove::rename(const fs::path& item, const std::string& newName)
{
    MoveOutcome outcome;
    const fs::path from = trimmed(item);
    const fs::path to = from.parent_path() / newName;
    if (newName.empty() || newName == "." || newName == ".." || newName.find('/') != std::string::npos)
        report(outcome,
               {MoveProblem::Kind::NotMoved, from,
                userText(QT_TRANSLATE_NOOP("luma::Engines", "\"%1\" is not a valid file name"), {newName})});
    else if (moveItemTo(outcome, MoveOperation::Move, from, to))
        return updateAfterRename(from, to);
    return outcome;
}

MoveOutcome LinkUpdatingMove::updateAfterRename(const fs::path& oldPath, const fs::path& newPath)
{
    MoveOutcome outcome;
    const fs::path from = trimmed(oldPath);
    const fs::path to = trimmed(newPath);
    outcome.moved.push_back({from, to});
    log(userText(QT_TRANSLATE_NOOP("luma::Engines", "Updating links from: %1 to %2"),
                 {from.filename().native(), to.filename().native()}) +
        "\n\n");
    log(userText(QT_TRANSLATE_NOOP("luma::Engines", "Updating links to: %1"), {from.filename().native()}) +
        "\n\n");
    // The item is still in its folder, so the links of its own pages are right.
    updateLinks(outcome, MovedPages::Kept);
    log('\n' + userText(QT_TRANSLATE_NOOP("luma::Engines", "Done")));
    return outcome;
}

void LinkUpdatingMove::updateLinks(MoveOutcome& outcome, MovedPages movedPages)
{
    if (outcome.moved.empty())
        return;
    const auto tree = SiteTree::read(m_site, m_callbacks.stillWanted);
    if (!tree) {
        outcome.complete = !tree.error().isStopped();
        if (outcome.complete)
            report(outcome, {MoveProblem::Kind::SiteUnreadable, m_site, tree.error().text});
        return;
    }
    const auto mapping = std::make_shared<const LinkMapping>(outcome.moved);
    const std::vector<SiteTree::Id> pages = tree->pages();
    OrderedWork<Result<bool>> work(pages.size(), m_callbacks.stillWanted);
    const bool complete = work.run(
        [&](std::size_t index, std::size_t) -> Result<bool> {
            if (isLinkIntoSite(*tree, pages[index]))
                return false;
            const fs::path page = tree->path(pages[index]);
            return rewritePage(page, PageUpdate(*mapping, page, movedPages == MovedPages::Rebased));
        },
        [&](std::size_t index, const Result<bool>& written) {
            const fs::path page = tree->path(pages[index]);
            if (!written)
                report(outcome, {MoveProblem::Kind::NotRewritten, page, written.error().text});
            else if (*written)
                outcome.rewritten.push_back(page);
        });
    outcome.complete = outcome.complete && complete;
    outcome.links = std::make_shared<const LinksUpdate>(LinksUpdate{
        outcome.moved,
        [mapping, movedPages](std::string_view source, const fs::path&,
                              const fs::path& file) -> Result<std::string> {
            if (webFileKind(file.native()) == WebFileKind::StyleSheet)
                return std::string(source);
            return PageUpdate(*mapping, file, movedPages == MovedPages::Rebased)(std::string(source));
        },
        {}});
}

} // namespace luma
