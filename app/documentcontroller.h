// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QObject>
#include <QPointer>

#include <filesystem>
#include <functional>
#include <map>

class QWidget;

namespace luma {

/// The open documents, at most one for each location; two names of one file are one location. Opens pages in
/// the page editor and every other file with the desktop's application. Main thread only.
class DocumentController final : public QObject
{
    Q_OBJECT

public:
    /// Shows the editor window of a page; the window deletes itself when it is closed. If the page is already
    /// open in the window `open`, updates that window and returns it. Null if the page can't be opened; the
    /// user has then been told.
    using PageOpener = std::function<QWidget*(const std::filesystem::path& page,
                                              const std::filesystem::path& siteFolder, QWidget* open)>;
    /// Opens a file with the desktop's application; false on failure.
    using FileOpener = std::function<bool(const std::filesystem::path& file)>;

    DocumentController(FileOpener openFile, PageOpener openPage, QObject* parent = nullptr);

    /// The window of the document at `path`, or null.
    [[nodiscard]] QWidget* windowOf(const std::filesystem::path& path) const;

    /// Shows the document at `path`; opens it if it is not open. `siteFolder` is the site that a page belongs
    /// to; empty if unknown. Fails if there is no such file or no application for it.
    Result<void> open(const std::filesystem::path& path, const std::filesystem::path& siteFolder = {});

    /// Notes that the document in `window` is now at `path`; also registers a window of a new document.
    void relocate(QWidget* window, const std::filesystem::path& path);

    /// Whether the extension is that of a page.
    static bool isPage(const std::filesystem::path& path);

private:
    FileOpener m_openFile;
    PageOpener m_openPage;
    std::map<std::filesystem::path, QPointer<QWidget>> m_windows;
};

} // namespace luma
