// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <filesystem>
#include <functional>
#include <map>

class QWidget;

namespace luma {

/// The open documents, at most one for each location; two names of one file are one location. It opens pages
/// in the page editor, once there is one, and every other file with the desktop's application. Main thread
/// only.
class DocumentController final : public QObject
{
    Q_OBJECT

public:
    /// Shows a page's editor window, which deletes itself when it is closed; null when the page cannot be
    /// opened, and the user has been told. Called with a page that is open already, it brings that window,
    /// `open`, up to date.
    using PageOpener = std::function<QWidget*(const std::filesystem::path& page,
                                              const std::filesystem::path& siteFolder, QWidget* open)>;
    /// Opens a file with the desktop's application; false when that cannot be done.
    using FileOpener = std::function<bool(const std::filesystem::path& file)>;

    explicit DocumentController(FileOpener openFile, QObject* parent = nullptr);

    void setPageOpener(const PageOpener& opener) { m_openPage = opener; }

    /// The window of the document at `path`, or none.
    [[nodiscard]] QWidget* windowOf(const std::filesystem::path& path) const;

    /// Shows the document at `path`, opening it when it is not open. `siteFolder` is the site that a page
    /// belongs to; empty when it is not known.
    Result<void> open(const std::filesystem::path& path, const std::filesystem::path& siteFolder = {});

    /// The document in `window` stands at `path` now. A window without a location is entered so.
    void relocate(QWidget* window, const std::filesystem::path& path);

    /// A new document of a type given by its name. There is no type that can be made so today.
    static Result<void> makeUntitledDocument(const QString& type);

    /// A page, by its extension.
    static bool isPage(const std::filesystem::path& path);

private:
    FileOpener m_openFile;
    PageOpener m_openPage;
    std::map<std::filesystem::path, QPointer<QWidget>> m_windows;
};

} // namespace luma
