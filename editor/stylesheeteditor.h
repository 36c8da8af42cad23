// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
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

/// Shows the style sheets of a page, one at a time, and stores what the user makes of them. What was typed
/// and not stored yet is kept by sheet while another one is looked at. It blocks while a sheet is formatted.
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
    /// `site` says where the page stands, against which linked sheets are found.
    StyleSheetEditor(const Controls& controls, PageTree& tree, std::function<SiteFolder()> site,
                     QObject* parent);

    void buildCSSMenu();
    /// Builds the menu anew where the page's sheets are not those in it any more.
    void updateCSSMenu();
    void selectCSS();
    void updateCSS();

    /// Whether anything is typed and not stored; storing all of it, which tells what failed; giving it up.
    [[nodiscard]] bool hasDrafts() const { return !m_drafts.isEmpty(); }
    void storeDrafts();
    void dropDrafts() { m_drafts.clear(); }

signals:
    /// A linked sheet was written.
    void fileStored();
    /// The text is to become the contents of the page's own `style` element of that entry. Call selectCSS()
    /// when it has.
    void styleBlockRequested(const QString& title, const QString& css);
    /// A linked sheet could not be written, for this reason.
    void failed(const QString& reason);

private:
    void textDidChange();
    Result<void> store(const QString& title, const QString& css);
    [[nodiscard]] QString shownTitle() const;
    /// The file beside the page that is named as the link is written, else the one that a browser would take.
    [[nodiscard]] std::filesystem::path fileOf(const QString& title) const;
    /// The sheet's text as it stands; nothing when it can't be read.
    [[nodiscard]] std::optional<std::string> textOf(const QString& title) const;

    Controls m_controls;
    PageTree& m_tree;
    std::function<SiteFolder()> m_site;
    QMap<QString, QString> m_drafts; // by title
};

} // namespace luma
