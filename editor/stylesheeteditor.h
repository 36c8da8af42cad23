// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "links/linksupdate.h"
#include "page/sitefolder.h"

#include <QMap>
#include <QObject>
#include <QString>

#include <filesystem>
#include <functional>

class QComboBox;
class QPlainTextEdit;
class QPushButton;

namespace luma {

class PageTree;

/// Shows the style sheets of a page, one at a time, and saves the user's changes. Unsaved text is kept for
/// each sheet while another one is shown. Formatting a sheet blocks.
/// Main thread.
class StyleSheetEditor final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QComboBox* cssMenu;
        QPlainTextEdit* cssField;
        QPushButton* cssButton;
    };
    /// `site` returns the page's location, against which links to sheets are resolved.
    StyleSheetEditor(const Controls& controls, PageTree& tree, std::function<SiteFolder()> site,
                     QObject* parent);

    void buildCSSMenu();
    /// Rebuilds the menu if the page's sheets have changed.
    void updateCSSMenu();
    void selectCSS();
    void updateCSS();

    /// Whether there is unsaved text; saves all of it, reporting what failed; discards it.
    [[nodiscard]] bool hasDrafts() const { return !m_drafts.isEmpty(); }
    void storeDrafts();
    void dropDrafts() { m_drafts.clear(); }

    /// Files of the site have been moved: calls `updatePage`, which changes the page's links, and takes its drafts along to
    /// the sheets' new titles, with their links changed, too.
    void followLinks(const LinksUpdate& update, const std::function<void()>& updatePage);

signals:
    /// A linked sheet was saved.
    void fileStored(const std::filesystem::path& file);
    /// Asks for the text to replace the contents of the page's `style` element with that title. Call
    /// selectCSS() when done.
    void styleBlockRequested(const QString& title, const QString& css);
    /// A linked sheet could not be saved, for this reason.
    void failed(const QString& reason);

private:
    void textDidChange();
    Result<void> store(const QString& title, const QString& css);
    [[nodiscard]] QString shownTitle() const;
    /// The file beside the page with the link's literal name, or else the one that a browser would load.
    [[nodiscard]] std::filesystem::path fileOf(const QString& title) const;
    [[nodiscard]] QStringList titles() const;
    /// The sheet's text as stored; empty if it can't be read.
    [[nodiscard]] std::optional<std::string> textOf(const QString& title) const;

    Controls m_controls;
    PageTree& m_tree;
    std::function<SiteFolder()> m_site;
    QMap<QString, QString> m_drafts; // by title
};

} // namespace luma
