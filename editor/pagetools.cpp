// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagetools.h"

#include "editor/attributespanel.h"
#include "editor/charactersheet.h"
#include "editor/checkpanel.h"
#include "editor/csscheck.h"
#include "editor/csscompletion.h"
#include "editor/cssvocabulary.h"
#include "editor/elementhover.h"
#include "editor/elementresizing.h"
#include "editor/elementsheet.h"
#include "editor/headingspanel.h"
#include "editor/hiddenelements.h"
#include "editor/markupsheet.h"
#include "editor/outlineeditor.h"
#include "editor/outlinefind.h"
#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "editor/pageedits.h"
#include "editor/pagespelling.h"
#include "editor/replacebar.h"
#include "editor/styleedits.h"
#include "editor/stylerulespanel.h"
#include "editor/stylerulesreader.h"
#include "editor/stylesheeteditor.h"
#include "editor/tablesheet.h"
#include "page/pagestore.h"
#include "page/pagetree.h"
#include "ui_HTMLDocument.h"
#include "web/previewprocess.h"
#include "web/previewsource.h"
#include "web/viewcontroller.h"

#include <QCoreApplication>
#include <QLabel>

namespace luma {

PageTools::PageTools(const Parts& parts, QWidget* window)
    : QObject(window),
      m_parts(parts),
      m_window(window),
      m_vocabulary(new CssVocabulary(parts.rendering, this))
{
    createOutlineTools();
    createSheets();
    createAttributes();
    createReplaceBar();
    createSheetTools();
    createStyleRules();
    createCheck();
    m_spelling = new PageSpelling(parts.rendering, parts.tree, *parts.ui.spellCheckAction, *window);
    connect(m_spelling, &PageSpelling::failed, this, &PageTools::failed);
}

void PageTools::createOutlineTools()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    m_find =
        new OutlineFind({ui.outlineFindBar, ui.outlineFindField, ui.outlineFindResult,
                         ui.outlineFindPreviousButton, ui.outlineFindNextButton, ui.outlineFindCloseButton},
                        m_parts.outline, m_parts.tree, m_parts.selection, m_parts.rendering, this);
    connect(m_find, &OutlineFind::closed, ui.myOutlineView, qOverload<>(&QWidget::setFocus));
    m_hidden = new HiddenElements(m_parts.outline, m_parts.selection, m_parts.rendering, this);
    connect(m_hidden, &HiddenElements::refused, this, &PageTools::refused);
    auto* const resizing = new ElementResizing(m_parts.selection, m_parts.edits, m_parts.rendering, this);
    connect(resizing, &ElementResizing::refused, this, &PageTools::refused);
    m_hover = new ElementHover(*ui.myOutlineView, m_parts.outline, m_parts.rendering, this);
    m_headings =
        new HeadingsPanel({ui.headingsPane, ui.headingsList, ui.headingsResult, ui.headingsCloseButton},
                          m_parts.tree, m_parts.outline, m_parts.selection, this);
}

void PageTools::createSheets()
{
    m_markupSheet = new MarkupSheet(m_parts.edits, m_window);
    auto* const editor = new OutlineEditor(*m_parts.ui.myOutlineView, m_parts.edits, this);
    connect(editor, &OutlineEditor::sheetRequested, m_markupSheet, &MarkupSheet::begin);
    connect(editor, &OutlineEditor::refused, this, &PageTools::refused);
    m_elementSheet = new ElementSheet(m_parts.selection, m_window);
    connect(m_elementSheet, &ElementSheet::confirmed, this, [this](const QString& tag, InsertPlace place) {
        if (tag == commentTag && !m_parts.outline.showsAllNodes())
            m_parts.ui.allNodesAction->trigger(); // or nothing would show it
        m_parts.edits.insertElement(tag, place);
    });
    m_tableSheet = new TableSheet(m_window);
    connect(m_tableSheet, &TableSheet::confirmed, &m_parts.rendering, &ViewController::insertTable);
    m_characterSheet = new CharacterSheet(m_window);
    connect(m_characterSheet, &CharacterSheet::confirmed, &m_parts.rendering, &ViewController::insertText);
    m_parts.rendering.webView()->setTableMenu(m_parts.ui.tableMenu);
}

void PageTools::createAttributes()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    auto* const panel = new AttributesPanel(
        {ui.attributesLabel, ui.attributesView, ui.altNotice, ui.altText, ui.decorativeButton,
         ui.keepRatioBox, ui.imageLinkButton, ui.makeLinkAction, ui.editLinkAction},
        m_parts.tree, m_parts.selection, m_parts.edits, m_parts.rendering, this);
    connect(panel, &AttributesPanel::refused, this, &PageTools::refused);
}

void PageTools::createReplaceBar()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    m_replace = new ReplaceBar(
        {ui.replaceBar, ui.replaceFindField, ui.replacementField, ui.replaceCaseButton, ui.replaceWordsButton,
         ui.replaceExpressionButton, ui.replaceSourceButton, ui.replaceResult, ui.replacePreviousButton,
         ui.replaceNextButton, ui.replaceCloseButton, ui.replaceButton, ui.replaceAllButton},
        {m_parts.tree, m_parts.stack, m_parts.store, m_parts.selection, m_parts.rendering, *ui.cssField},
        this);
    connect(m_replace, &ReplaceBar::textEdited, this, &PageTools::textsReplaced);
    connect(m_replace, &ReplaceBar::sourceEdited, this, &PageTools::sourceReplaced);
    connect(m_replace, &ReplaceBar::refused, this, &PageTools::refused);
    connect(m_replace, &ReplaceBar::closed, m_parts.rendering.webView(), qOverload<>(&QWidget::setFocus));
}

void PageTools::createSheetTools()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    new CssCompletion(ui.cssField, *m_vocabulary);
    auto* const check =
        new CssCheck({ui.cssField, ui.cssProblem, ui.cssNextProblemButton}, *m_vocabulary, this);
    connect(&m_parts.rendering.webView()->editorPage(), &EditorPage::shown, check, &CssCheck::noteChange);
}

void PageTools::createStyleRules()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    StyleSheetEditor& sheets = m_parts.styleSheets;
    connect(&sheets, &StyleSheetEditor::draftChanged, &m_parts.rendering, &ViewController::showDraft);
    auto* const reader = new StyleRulesReader(
        {m_parts.tree, m_parts.rendering, m_parts.siteFolder,
         [&sheets](const std::filesystem::path& file) { return sheets.textOfFile(file); }},
        this);
    auto* const edits =
        new StyleEdits({m_parts.tree, m_parts.outline, m_parts.edits, sheets, m_parts.stack}, this);
    connect(edits, &StyleEdits::refused, this, &PageTools::refused);
    auto* const panel =
        new StyleRulesPanel({ui.rulesLabel, ui.rulesPages, ui.rulesView, ui.boxView, ui.computedView,
                             ui.computedFilter, ui.newRuleButton, ui.statesButton},
                            {m_parts.selection, m_parts.rendering, *reader, *edits, *m_vocabulary,
                             m_parts.siteFolder, m_parts.linkRules},
                            this);
    connect(panel, &StyleRulesPanel::refused, this, &PageTools::refused);
    connect(panel, &StyleRulesPanel::partHovered, m_hover, &ElementHover::mark);
    connect(&sheets, &StyleSheetEditor::draftChanged, panel, &StyleRulesPanel::noteChange);
    connect(&m_parts.tree, &PageTree::reset, panel, &StyleRulesPanel::noteChange);
    connect(&m_parts.tree, &PageTree::attributesSwapped, panel, &StyleRulesPanel::noteChange);
    connect(&m_parts.tree, &PageTree::exchanged, panel, &StyleRulesPanel::noteChange);
    connect(&m_parts.rendering.webView()->editorPage(), &EditorPage::shown, panel,
            &StyleRulesPanel::noteChange);
}

void PageTools::createCheck()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    m_check = new CheckPanel({ui.checkPane, ui.checkList, ui.checkResult, ui.checkCloseButton},
                             {m_parts.tree, m_parts.outline, m_parts.selection, m_parts.rendering,
                              m_parts.siteFolder, m_parts.linkRules},
                             this);
    connect(&m_parts.tree, &PageTree::reset, m_check, &CheckPanel::noteChange);
    connect(&m_parts.tree, &PageTree::attributesSwapped, m_check, &CheckPanel::noteChange);
    connect(&m_parts.tree, &PageTree::exchanged, m_check, &CheckPanel::noteChange);
    connect(&m_parts.rendering.webView()->editorPage(), &EditorPage::shown, m_check, &CheckPanel::noteChange);
    connect(&m_parts.styleSheets, &StyleSheetEditor::fileStored, m_check, &CheckPanel::noteChange);
    connect(&m_parts.styleSheets, &StyleSheetEditor::fileStored, this, &PageTools::noteSaved);
}

PageTools::~PageTools() = default;

void PageTools::createPreview()
{
    m_preview = new PreviewProcess(
        [this](const PreviewProcess::Take& take) {
            m_parts.rendering.whenCaughtUp(this, [this, take] {
                if (m_parts.store.hasPage())
                    take({QByteArray::fromStdString(m_parts.store.markup()), m_parts.siteFolder(),
                          m_parts.rendering.webView()->editorPage().drafts(), m_parts.linkRules().indexNames,
                          m_parts.unsavedPages()});
            });
        },
        this);
    QLabel* const status = m_parts.ui.infoText;
    connect(m_preview, &PreviewProcess::delayed, status,
            [status] { status->setText(tr("The preview with scripts is starting.")); });
    connect(m_preview, &PreviewProcess::shown, status, &QLabel::clear);
    connect(m_preview, &PreviewProcess::failed, status, &QLabel::clear);
    connect(m_preview, &PreviewProcess::failed, this, &PageTools::refused);
    connect(m_preview, &PreviewProcess::quitRequested, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void PageTools::showPreview()
{
    if (!m_preview)
        createPreview();
    m_preview->show();
}

void PageTools::noteSaved()
{
    if (m_preview)
        m_preview->reload();
}

void PageTools::noteLinks()
{
    m_check->noteChange();
}

void PageTools::noteReturn()
{
    m_check->noteChange();
    m_spelling->update();
}

} // namespace luma
