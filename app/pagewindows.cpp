// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/pagewindows.h"

#include "app/documentcontroller.h"
#include "app/helpmenu.h"
#include "app/preferences.h"
#include "base/pathbelow.h"
#include "base/pathtext.h"
#include "browser/movenotices.h"
#include "desktop/windowregistry.h"
#include "editor/htmldocument.h"
#include "editor/pagefollower.h"
#include "editor/templatesheet.h"

#include <QFile>
#include <QVariant>

#include <cstdio>

namespace luma {

namespace fs = std::filesystem;

namespace {

const QString layoutKey = QStringLiteral("pageWindowLayout");
const QString recentKey = QStringLiteral("recentPages");
constexpr qsizetype longestList = 10;

void forAllPages(const std::function<void(HTMLDocument&)>& f)
{
    for (QWidget* window : WindowRegistry::instance().windows()) {
        if (auto* const page = qobject_cast<HTMLDocument*>(window))
            f(*page);
    }
}

} // namespace

QWidget* PageWindows::open(const fs::path& page, const fs::path& siteFolder, QWidget* open)
{
    if (auto* window = qobject_cast<HTMLDocument*>(open)) {
        window->checkFile();
        return window;
    }
    HTMLDocument* const window = makeWindow(siteFolder.empty() ? m_siteOf(page) : siteFolder);
    window->readFromURL(page);
    window->show();
    window->windowDidLoad();
    return window;
}

bool PageWindows::showSheetPlace(const fs::path& sheet, unsigned line, unsigned column)
{
    for (QWidget* const window : WindowRegistry::instance().windows()) {
        auto* const page = qobject_cast<HTMLDocument*>(window);
        if (!page || !page->showSheetPlace(sheet, line, column))
            continue;
        WindowRegistry::bringToFront(page);
        return true;
    }
    return false;
}

void PageWindows::newPage(const fs::path& siteFolder)
{
    newPage(siteFolder, PageTemplate());
}

void PageWindows::newPage(const fs::path& siteFolder, const PageTemplate& from)
{
    HTMLDocument* const window = makeWindow(siteFolder);
    window->useTemplate(from);
    window->show();
    window->windowDidLoad();
}

void PageWindows::recover(const UnsavedPage& unsaved)
{
    if (QWidget* const open = m_documents.windowOf(unsaved.page))
        open->close();
    HTMLDocument* const window = makeWindow(unsaved.page.empty() ? fs::path() : m_siteOf(unsaved.page));
    std::error_code error;
    if (fs::exists(unsaved.page, error))
        window->readFromURL(unsaved.page);
    window->recover(unsaved);
    window->show();
    window->windowDidLoad();
}

void PageWindows::follow(const MoveNotices& notices)
{
    connect(&notices, &MoveNotices::itemMoved, this, [](const MovedItem& item, const fs::path& site) {
        forAllPages([&](HTMLDocument& page) { page.follower().followItem(item, site); });
    });
    connect(&notices, &MoveNotices::linksUpdated, this, [](const std::shared_ptr<const LinksUpdate>& update) {
        forAllPages([&](HTMLDocument& page) { page.follower().followLinks(update); });
    });
}

HTMLDocument* PageWindows::makeWindow(const fs::path& siteFolder)
{
    auto* const window = new HTMLDocument([this] { return recentPages(); });
    window->mountPath = siteFolder;
    window->setTemplateFolder([this] {
        const QString folder = m_preferences.value(Preferences::templateFolder).toString();
        return folder.isEmpty() ? TemplateSheet::usualFolder() : pathOf(folder);
    });
    window->setTidyChoice([this] { return m_preferences.value(Preferences::tidiesPages).toBool(); });
    window->setLinkRules(m_rulesOf);
    window->restoreLayoutState(m_preferences.value(layoutKey).toByteArray());
    addHelpMenu(*window);
    connectWindow(window);
    return window;
}

void PageWindows::connectWindow(HTMLDocument* window)
{
    connect(window, &HTMLDocument::newRequested, this, [this, window] { newPage(window->mountPath); });
    connect(window, &HTMLDocument::newFromRequested, this,
            [this, window](const PageTemplate& from) { newPage(window->mountPath, from); });
    connect(window, &HTMLDocument::openRequested, this,
            [this, window](const fs::path& page) { openFrom(window, page); });
    connect(window, &HTMLDocument::publishRequested, this, &PageWindows::publishRequested);
    connect(window, &HTMLDocument::findInSiteRequested, this, &PageWindows::findInSiteRequested);
    connect(window, &HTMLDocument::siteNamesRequested, this, &PageWindows::siteNamesRequested);
    connect(window, &HTMLDocument::locationChanged, this, [this, window](const fs::path& page) {
        m_documents.relocate(window, page);
        noteRecent(page);
    });
    connect(window, &HTMLDocument::windowWillClose, this,
            [this, window] { m_preferences.setValue(layoutKey, window->layoutState()); });
}

// A page inside the site belongs to that site; that of any other page is looked for.
void PageWindows::openFrom(const HTMLDocument* window, const fs::path& page)
{
    const fs::path& site = window->mountPath;
    const bool isInside = isAtOrBelow(page.native(), site.native());
    if (const auto opened = m_documents.open(page, isInside ? site : fs::path()); !opened)
        (void)std::fprintf(stderr, "luma: %s\n", opened.error().text.c_str());
}

std::vector<fs::path> PageWindows::recentPages() const
{
    std::vector<fs::path> pages;
    const QStringList stored = m_preferences.value(recentKey).toStringList();
    for (const QString& page : stored)
        pages.emplace_back(QFile::encodeName(page).toStdString());
    return pages;
}

void PageWindows::noteRecent(const fs::path& page)
{
    QStringList stored = m_preferences.value(recentKey).toStringList();
    const QString name = QFile::decodeName(QByteArray::fromStdString(page.native()));
    stored.removeAll(name);
    stored.prepend(name);
    m_preferences.setValue(recentKey, stored.mid(0, longestList));
}

} // namespace luma
