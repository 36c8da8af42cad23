// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

#include <filesystem>
#include <vector>

namespace luma {

class DocumentController;
class HTMLDocument;
class Preferences;

/// Opens the windows of the page editor for the document controller, keeps the list of pages opened before
/// and the layout of the window closed last. Both outlive it. Main thread only.
class PageWindows final : public QObject
{
    Q_OBJECT

public:
    PageWindows(DocumentController& documents, Preferences& preferences);

    /// A new page from the template, of the site in `siteFolder`.
    void newPage(const std::filesystem::path& siteFolder);

private:
    QWidget* open(const std::filesystem::path& page, const std::filesystem::path& siteFolder, QWidget* open);
    HTMLDocument* makeWindow(const std::filesystem::path& siteFolder);
    void connectWindow(HTMLDocument* window);
    void openFrom(const HTMLDocument* window, const std::filesystem::path& page);
    [[nodiscard]] std::vector<std::filesystem::path> recentPages() const;
    void noteRecent(const std::filesystem::path& page);

    DocumentController& m_documents;
    Preferences& m_preferences;
};

} // namespace luma
