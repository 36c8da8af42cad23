// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/webrules.h"
#include "page/sitefolder.h"

#include <QHash>
#include <QObject>

#include <functional>

class QUndoStack;
class QWidget;

namespace Ui {
class HTMLDocument;
}

namespace luma {

class CharacterSheet;
class CheckPanel;
class CssVocabulary;
class ElementHover;
class ElementSheet;
class HeadingsPanel;
class HiddenElements;
class MarkupSheet;
class OutlineFind;
class OutlineModel;
class OutlineSelection;
class PageEdits;
class PageSpelling;
class PageStore;
class PageTree;
class PreviewProcess;
class ReplaceBar;
class StyleSheetEditor;
class TableSheet;
class ViewController;

/// The panels, bars and sheets around the outline and the rendering of a page's window: makes each, gives it its widgets and
/// connects it to what it follows. Main thread.
class PageTools final : public QObject
{
    Q_OBJECT

public:
    /// What the tools work on; must outlive them.
    struct Parts
    {
        const Ui::HTMLDocument& ui;
        PageTree& tree;
        QUndoStack& stack;
        PageStore& store;
        OutlineModel& outline;
        OutlineSelection& selection;
        PageEdits& edits;
        StyleSheetEditor& styleSheets;
        ViewController& rendering;
        std::function<SiteFolder()> siteFolder;
        std::function<WebRules()> linkRules;                      ///< of the page as it is now
        std::function<QHash<QString, QByteArray>()> unsavedPages; ///< other pages of the site: UTF-8, by file
    };

    /// The window becomes the parent.
    PageTools(const Parts& parts, QWidget* window);
    ~PageTools() override;

    [[nodiscard]] OutlineFind& find() const { return *m_find; }
    [[nodiscard]] ReplaceBar& replaceBar() const { return *m_replace; }
    [[nodiscard]] HiddenElements& hidden() const { return *m_hidden; }
    [[nodiscard]] HeadingsPanel& headings() const { return *m_headings; }
    [[nodiscard]] CheckPanel& check() const { return *m_check; }
    [[nodiscard]] MarkupSheet& markupSheet() const { return *m_markupSheet; }
    [[nodiscard]] ElementSheet& elementSheet() const { return *m_elementSheet; }
    [[nodiscard]] TableSheet& tableSheet() const { return *m_tableSheet; }
    [[nodiscard]] CharacterSheet& characterSheet() const { return *m_characterSheet; }

    /// Opens the preview in which the page's scripts run, or shows it again.
    void showPreview();
    /// The page or one of its sheets was saved.
    void noteSaved();
    /// The links of the page have been changed from outside.
    void noteLinks();
    /// The user is back from another program, which may have changed anything.
    void noteReturn();

signals:
    /// Something was not done, for this reason; failed(): something the user has to see to.
    void refused(const QString& reason);
    void failed(const QString& reason);
    /// Texts of the tree, or the page's whole source, have been replaced.
    void textsReplaced();
    void sourceReplaced();

private:
    void createOutlineTools();
    void createSheets();
    void createAttributes();
    void createReplaceBar();
    void createSheetTools();
    void createStyleRules();
    void createCheck();
    void createPreview();

    Parts m_parts;
    QWidget* m_window;
    CssVocabulary* m_vocabulary;
    OutlineFind* m_find = nullptr;
    ElementHover* m_hover = nullptr;
    HiddenElements* m_hidden = nullptr;
    HeadingsPanel* m_headings = nullptr;
    MarkupSheet* m_markupSheet = nullptr;
    ElementSheet* m_elementSheet = nullptr;
    TableSheet* m_tableSheet = nullptr;
    CharacterSheet* m_characterSheet = nullptr;
    ReplaceBar* m_replace = nullptr;
    CheckPanel* m_check = nullptr;
    PageSpelling* m_spelling = nullptr;
    PreviewProcess* m_preview = nullptr;
};

} // namespace luma
