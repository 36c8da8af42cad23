// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "links/linksupdate.h"
#include "page/cssedits.h"
#include "page/sitefolder.h"
#include "page/stylesheetfile.h"

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QMap>
#include <QObject>
#include <QStringList>

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>

class QComboBox;
class QPlainTextEdit;
class QPushButton;
class QTabBar;

namespace luma {

class PageTree;

/// Shows the style sheets of a page, one at a time, and saves the user's changes. Unsaved text is kept for
/// each sheet while another one is shown, and when the page is read again. A sheet that another program changes
/// is shown anew; if there is unsaved text, saving it asks first. Formatting a sheet blocks.
/// Main thread.
class StyleSheetEditor final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QComboBox* cssMenu;
        QTabBar* cssTabs; ///< the same sheets, by their names alone
        QPlainTextEdit* cssField;
        QPushButton* cssButton;
    };
    /// `site` returns the page's location, against which links to sheets are resolved. Questions open on the window of
    /// the controls.
    StyleSheetEditor(const Controls& controls, PageTree& tree, std::function<SiteFolder()> site,
                     QObject* parent);

    void buildCSSMenu();
    /// Rebuilds the menu if the page's sheets have changed, and shows the style block's text if that has.
    void updateCSSMenu();
    void selectCSS();
    void updateCSS();

    /// The text of a style sheet's file with what is not saved yet, UTF-8; nothing if it can't be read.
    [[nodiscard]] std::optional<std::string> textOfFile(const std::filesystem::path& file);
    /// Changes that text, which stays unsaved. A sheet that only such edits have changed is saved without being tidied.
    void editFile(const std::filesystem::path& file, const CssEdit& edit);

    /// Whether the page links to the style sheet in this file.
    [[nodiscard]] bool uses(const std::filesystem::path& file) const;
    /// Shows such a sheet with the cursor at a place of its file, counted from 1.
    void showPlace(const std::filesystem::path& file, unsigned line, unsigned column);

    /// Whether there is unsaved text.
    [[nodiscard]] bool hasDrafts() const { return !m_drafts.isEmpty(); }
    /// Saves all of it, reporting what failed, and then calls `then`; not if the user refuses to replace a sheet.
    void storeDrafts(const std::function<void()>& then);

    /// Files of the site have been moved: calls `updatePage`, which changes the page's links, and takes its drafts along to
    /// the sheets' new titles, with their links changed, too.
    void followLinks(const LinksUpdate& update, const std::function<void()>& updatePage);

signals:
    /// A linked sheet was saved.
    void fileStored(const std::filesystem::path& file);
    /// Asks for the text to replace the contents of the page's `style` element with that title. Call
    /// selectCSS() when done.
    void styleBlockRequested(const QString& title, const QString& css);
    /// A linked sheet has this unsaved text now, or none.
    void draftChanged(const std::filesystem::path& file, const std::optional<QByteArray>& text);
    /// A linked sheet could not be saved, for this reason.
    void failed(const QString& reason);

private:
    void textDidChange();
    void connectTabs();
    /// Shows the sheets as tabs, those with unsaved text marked.
    void updateTabs();
    void storeNext(QStringList titles, const std::function<void()>& then);
    /// Stores the text and calls `then` with the outcome, at once or after the user has agreed.
    using Stored = std::function<void(const Result<void>& stored)>;
    void store(const QString& title, const QString& css, const Stored& then);
    Result<void> write(const QString& title, const QString& css);
    /// The sheet's file as it was last read or written; newly looked at where the page has moved since.
    StyleSheetFile& sheetFile(const QString& title);
    void followFile(const std::filesystem::path& file);
    void noteChange();
    [[nodiscard]] QString shownTitle() const;
    /// The file beside the page with the link's literal name, or else the one that a browser would load.
    [[nodiscard]] std::filesystem::path fileOf(const QString& title) const;
    [[nodiscard]] QStringList titles() const;
    /// The sheet's text as stored; empty if it can't be read.
    [[nodiscard]] std::optional<std::string> textOf(const QString& title);

    Controls m_controls;
    PageTree& m_tree;
    std::function<SiteFolder()> m_site;
    void setDraft(const QString& title, const QString& css);
    void dropDraft(const QString& title);
    [[nodiscard]] QString titleOf(const std::filesystem::path& file) const;

    QMap<QString, QString> m_drafts;      // by title
    QMap<QString, QString> m_editedTexts; // the texts as saved of drafts that only editFile() made
    std::map<QString, StyleSheetFile> m_files;
    QFileSystemWatcher m_watcher;       // of the sheet shown
    std::optional<std::string> m_shown; // the sheet's text as it was stored
};

} // namespace luma
