// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

namespace luma {

class DocumentController;
class HTMLDocument;
class MoveNotices;
class Preferences;
struct PageTemplate;
struct UnsavedPage;
struct WebRules;

/// Opens the windows of the page editor; keeps the list of recent pages and the layout of the window closed
/// last. Main thread only.
class PageWindows final : public QObject
{
    Q_OBJECT

public:
    /// The folder of the site that a page belongs to; empty if unknown.
    using SiteFinder = std::function<std::filesystem::path(const std::filesystem::path& page)>;
    using LinkRulesOf = std::function<WebRules(const std::filesystem::path& page)>;
    /// Documents and preferences outlive it. `rulesOf` says by which rules the links of a page are judged.
    PageWindows(DocumentController& documents, Preferences& preferences, SiteFinder siteOf,
                LinkRulesOf rulesOf)
        : m_documents(documents),
          m_preferences(preferences),
          m_siteOf(std::move(siteOf)),
          m_rulesOf(std::move(rulesOf))
    {}

    /// See DocumentController::PageOpener.
    QWidget* open(const std::filesystem::path& page, const std::filesystem::path& siteFolder, QWidget* open);
    /// Shows a place of a style sheet, counted from 1, in the window of an open page that uses the sheet. False without one.
    bool showSheetPlace(const std::filesystem::path& sheet, unsigned line, unsigned column);
    /// Opens a new page in the site at `siteFolder`, made from `from`, or from the usual template.
    void newPage(const std::filesystem::path& siteFolder, const PageTemplate& from);
    void newPage(const std::filesystem::path& siteFolder);

    /// Opens a page with the edits that an earlier run has left unsaved; in a new one if its file is gone.
    void recover(const UnsavedPage& unsaved);

    /// Lets the open pages follow their files and the links on the disk.
    void follow(const MoveNotices& notices);

signals:
    /// The user wants to publish this page with what it needs.
    void publishRequested(const std::filesystem::path& page);
    /// The user wants to look for this text, if there is one, in all files of the page's site.
    void findInSiteRequested(const std::filesystem::path& page, const QString& text);
    /// The user wants to see the classes and ids of the page's site.
    void siteNamesRequested(const std::filesystem::path& page);

private:
    HTMLDocument* makeWindow(const std::filesystem::path& siteFolder);
    void connectWindow(HTMLDocument* window);
    void openFrom(const HTMLDocument* window, const std::filesystem::path& page);
    [[nodiscard]] std::vector<std::filesystem::path> recentPages() const;
    void noteRecent(const std::filesystem::path& page);

    DocumentController& m_documents;
    Preferences& m_preferences;
    SiteFinder m_siteOf;
    LinkRulesOf m_rulesOf;
};

} // namespace luma
