// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pageactions.h"

#include "base/pathtext.h"
#include "desktop/icons.h"
#include "desktop/otherprograms.h"
#include "editor/charactersheet.h"
#include "editor/checkpanel.h"
#include "editor/elementsheet.h"
#include "editor/formatbar.h"
#include "editor/headingspanel.h"
#include "editor/hiddenelements.h"
#include "editor/htmldocument.h"
#include "editor/markupsheet.h"
#include "editor/outlinefind.h"
#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "editor/pageedits.h"
#include "editor/pagesaver.h"
#include "editor/pagetools.h"
#include "editor/replacebar.h"
#include "editor/tablesheet.h"
#include "ui_HTMLDocument.h"
#include "web/viewcontroller.h"

#include <QActionGroup>
#include <QApplication>

#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr double zoomStep = 1.1;
constexpr int phoneWidth = 390; // CSS pixels
constexpr int tabletWidth = 768;
constexpr int desktopWidth = 1280;

const QString browserType = QStringLiteral("x-scheme-handler/http");

} // namespace

PageActions::PageActions(const Parts& parts, RecentPages recentPages)
    : QObject(&parts.document),
      m_parts(parts),
      m_recentPages(std::move(recentPages)),
      m_panes({{parts.ui.outlinePane, parts.ui.myOutlineView},
               {parts.ui.contentView, parts.rendering.webView()},
               {parts.ui.checkPane, parts.ui.checkList},
               {parts.ui.attributesPane, parts.ui.attributesView},
               {parts.ui.rulesPane, parts.ui.rulesView},
               {parts.ui.stylePane, parts.ui.cssField}},
              *parts.rendering.webView(),
              {parts.ui.myOutlineView, parts.ui.sideView, parts.ui.formatBar, parts.ui.elementPath,
               parts.ui.noticeBar})
{
    for (const Command& command : m_commands) {
        connect(command.action, &QAction::triggered, this, command.run);
        if (command.icon)
            command.action->setIcon(icons::symbol(QString::fromLatin1(command.icon)));
    }
    connectControls();
    connectLooks();
    parts.document.addAction(parts.ui.previousPaneAction); // in no menu
    const Ui::HTMLDocument& ui = parts.ui;
    new FormatBar({*ui.formatBar,
                   *ui.formatMenu,
                   {ui.boldAction, ui.italicAction, ui.underlineAction},
                   parts.rendering},
                  this);
}

std::vector<PageActions::Command> PageActions::table()
{
    using enum When;
    const Ui::HTMLDocument& ui = m_parts.ui;
    HTMLDocument& page = m_parts.document;
    PageSaver& saver = m_parts.saver;
    PageEdits& edits = m_parts.edits;
    OutlineFind& find = m_parts.tools.find();
    ViewController& view = m_parts.rendering;
    return {
        {ui.newAction, Always, [&page] { emit page.newRequested(); }},
        {ui.newFromAction, Always, [&saver] { saver.newFromPanel(); }},
        {ui.newFromTemplateAction, Always, [&saver] { saver.newFromTemplate(); }},
        {ui.openAction, Always, [&saver] { saver.openPanel(); }},
        {ui.saveAction, HasPage, [&page] { page.saveEverything({}); }},
        {ui.saveAsAction, HasPage, [&saver] { saver.saveAs({}); }},
        {ui.saveTemplateAction, HasPage, [&saver] { saver.saveAsTemplate(); }},
        {ui.revertAction, HasFile, [&page] { page.revertDocumentToSaved(); }},
        {ui.publishAction, HasPage,
         [&page] { page.saveEverything([&page] { emit page.publishRequested(page.docURL()); }); }},
        {ui.closeAction, Always, [&page] { page.close(); }},
        {ui.quitAction, Always,
         [] { QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection); }},
        {ui.undoAction, CanUndo, [&edits] { edits.undo(); }},
        {ui.redoAction, CanRedo, [&edits] { edits.redo(); }},
        {ui.cutAction, Always, [this] { sendToFocus("cut", QWebEnginePage::Cut); }},
        {ui.copyAction, Always, [this] { sendToFocus("copy", QWebEnginePage::Copy); }},
        {ui.pasteAction, Always, [this] { sendToFocus("paste", QWebEnginePage::Paste); }},
        {ui.selectAllAction, Always, [this] { sendToFocus("selectAll", QWebEnginePage::SelectAll); }},
        {ui.findAction, HasPage,
         [&find, &replace = m_parts.tools.replaceBar(), &ui] {
             if (ui.cssField->hasFocus()) {
                 replace.begin();
                 return;
             }
             ui.outlineAction->setChecked(true);
             find.begin();
         }},
        {ui.findNextAction, HasPage,
         [&find, &replace = m_parts.tools.replaceBar()] {
             replace.isShown() ? replace.next() : find.next();
         }},
        {ui.findPreviousAction, HasPage,
         [&find, &replace = m_parts.tools.replaceBar()] {
             replace.isShown() ? replace.previous() : find.previous();
         }},
        {ui.replaceAction, HasPage, [&replace = m_parts.tools.replaceBar()] { replace.begin(); }},
        {ui.siteNamesAction, HasFile, [&page] { emit page.siteNamesRequested(page.docURL()); }},
        {ui.findInSiteAction, HasFile,
         [&page, &field = *ui.replaceFindField] {
             emit page.findInSiteRequested(page.docURL(), field.isVisible() ? field.text() : QString());
         }},
        {ui.insertMoreAction, CanInsert, [&sheet = m_parts.tools.elementSheet()] { sheet.begin(); }},
        {ui.deleteTagAction, CanDelete, [&edits] { edits.deleteTag(); }},
        {ui.editMarkupAction, CanDelete,
         [&sheet = m_parts.tools.markupSheet(), &selection = m_parts.selection] {
             sheet.begin(selection.index());
         }},
        {ui.duplicateAction, CanMove, [&edits] { edits.duplicate(); }},
        {ui.moveUpAction, CanMove, [&edits] { edits.moveUp(); }},
        {ui.moveDownAction, CanMove, [&edits] { edits.moveDown(); }},
        {ui.hideAction, HasElement, [&hidden = m_parts.tools.hidden()] { hidden.toggleSelected(); }},
        {ui.pageTitleAction, HasPage, [&page] { page.editTitle(); }},
        {ui.allNodesAction, Always,
         [&outline = m_parts.outline, action = ui.allNodesAction] {
             outline.setShowsAllNodes(action->isChecked());
         }},
        {ui.reloadAction, HasPage, [&page] { page.reload(); }, "reload"},
        {ui.tidySourceAction, HasPage, [&page] { page.tidySource(); }},
        {ui.showSourceAction, HasPage, [&view] { view.showSource(); }, "script"},
        {ui.scriptConsoleAction, Always, [&view] { view.showScriptConsole(); }},
        {ui.scriptPreviewAction, HasPage, [&tools = m_parts.tools] { tools.showPreview(); }},
        {ui.inspectElementAction, HasPage, [&view] { view.inspectElement(); }},
        {ui.pageCheckAction, HasPage,
         [&check = m_parts.tools.check(), action = ui.pageCheckAction] {
             check.setShown(action->isChecked());
         }},
        {ui.headingsAction, HasPage,
         [&headings = m_parts.tools.headings(), &ui] {
             if (ui.headingsAction->isChecked())
                 ui.outlineAction->setChecked(true);
             headings.setShown(ui.headingsAction->isChecked());
         }},
        {ui.nextPaneAction, Always, [this] { m_panes.go(1); }},
        {ui.previousPaneAction, Always, [this] { m_panes.go(-1); }},
        {ui.zoomInAction, Always, [&view] { view.setMagnification(view.magnification() * zoomStep); }},
        {ui.zoomOutAction, Always, [&view] { view.setMagnification(view.magnification() / zoomStep); }},
        {ui.actualSizeAction, Always, [&view] { view.setMagnification(1); }},
        {ui.phoneWidthAction, Always, [&view] { view.setPageWidth(phoneWidth); }},
        {ui.tabletWidthAction, Always, [&view] { view.setPageWidth(tabletWidth); }},
        {ui.desktopWidthAction, Always, [&view] { view.setPageWidth(desktopWidth); }},
        {ui.freeWidthAction, Always, [&view] { view.setPageWidth(0); }},
        {ui.darkAction, Always, [this] { showMedia(); }},
        {ui.printAction, Always, [this] { showMedia(); }},
        {ui.boldAction, HasPage, [&view, action = ui.boldAction] { view.formatText(action); }, "bold"},
        {ui.italicAction, HasPage, [&view, action = ui.italicAction] { view.formatText(action); }, "italic"},
        {ui.underlineAction, HasPage, [&view, action = ui.underlineAction] { view.formatText(action); },
         "underline"},
        {ui.makeLinkAction, HasPage, [&view] { view.makeLink(); }, "link"},
        {ui.editLinkAction, HasPage, [&view] { view.editLink(); }},
        {ui.removeLinkAction, HasPage, [&view] { view.removeLink(); }},
        {ui.insertImageAction, HasPage, [&view] { view.insertImage(); }, "image"},
        {ui.insertCharacterAction, HasPage, [&sheet = m_parts.tools.characterSheet()] { sheet.begin(); }},
        {ui.insertTableAction, HasPage, [&sheet = m_parts.tools.tableSheet()] { sheet.begin(); }},
        {ui.rowAboveAction, InTable, [&edits] { edits.editTable(TableEdit::RowAbove); }},
        {ui.rowBelowAction, InTable, [&edits] { edits.editTable(TableEdit::RowBelow); }},
        {ui.columnLeftAction, InTable, [&edits] { edits.editTable(TableEdit::ColumnLeft); }},
        {ui.columnRightAction, InTable, [&edits] { edits.editTable(TableEdit::ColumnRight); }},
        {ui.removeRowsAction, InTable, [&edits] { edits.editTable(TableEdit::RemoveRows); }},
        {ui.removeColumnsAction, InTable, [&edits] { edits.editTable(TableEdit::RemoveColumns); }},
        {ui.mergeCellsAction, InTable, [&edits] { edits.editTable(TableEdit::MergeCells); }},
        {ui.splitCellAction, InTable, [&edits] { edits.editTable(TableEdit::SplitCell); }},
        {ui.headerRowAction, InTable, [&edits] { edits.editTable(TableEdit::HeaderRow); }},
    };
}

bool PageActions::isAvailable(When when) const
{
    switch (when) {
    case When::Always:
        return true;
    case When::HasPage:
        return m_parts.store.hasPage();
    case When::HasFile:
        return m_parts.store.hasFile();
    case When::CanUndo:
        return m_parts.document.undoStack()->canUndo();
    case When::CanRedo:
        return m_parts.document.undoStack()->canRedo();
    case When::HasElement:
        return m_parts.selection.element() != nullptr;
    case When::CanInsert:
        return m_parts.selection.node() && !insertPlaces(*m_parts.selection.node()).empty();
    case When::InTable:
        return m_parts.selection.element() && tableAround(*m_parts.selection.element());
    case When::CanDelete:
        return m_parts.rules.canDelete(m_parts.selection.node());
    case When::CanMove: // An element that can't be moved tells the reason.
        return m_parts.selection.element() || m_parts.rules.canMove(m_parts.selection.node());
    }
    return false;
}

void PageActions::update()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    for (const Command& command : m_commands)
        command.action->setEnabled(isAvailable(command.when));
    const QUndoStack& history = *m_parts.document.undoStack();
    ui.undoAction->setText(history.canUndo() ? tr("&Undo %1").arg(history.undoText()) : tr("&Undo"));
    ui.redoAction->setText(history.canRedo() ? tr("&Redo %1").arg(history.redoText()) : tr("&Redo"));
    ui.formatBar->setEnabled(m_parts.store.hasPage());
    ui.formatMenu->setEnabled(m_parts.store.hasPage());
    ui.browserMenu->setEnabled(m_parts.store.hasPage());
    ui.insertMenu->setEnabled(ui.insertMoreAction->isEnabled());
    ui.addTagButton->setEnabled(ui.insertMoreAction->isEnabled());
    ui.deleteTagButton->setEnabled(ui.deleteTagAction->isEnabled());
}

void PageActions::connectControls() const
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    ui.addTagButton->setMenu(ui.insertMenu);
    ui.addTagButton->setIcon(icons::symbol(QStringLiteral("add")));
    ui.deleteTagButton->setIcon(icons::symbol(QStringLiteral("delete")));
    ui.checkCloseButton->setIcon(icons::symbol(QStringLiteral("close")));
    ui.replaceCloseButton->setIcon(icons::symbol(QStringLiteral("close")));
    ui.headingsCloseButton->setIcon(icons::symbol(QStringLiteral("close")));
    connect(&m_parts.tools.headings(), &HeadingsPanel::closed, ui.headingsAction, &QAction::trigger);
    connect(&m_parts.tools.check(), &CheckPanel::closed, ui.pageCheckAction, &QAction::trigger);
    ui.outlineFindCloseButton->setIcon(icons::symbol(QStringLiteral("close")));
    connect(ui.deleteTagButton, &QPushButton::clicked, ui.deleteTagAction, &QAction::trigger);
    connect(ui.replaceSiteButton, &QPushButton::clicked, ui.findInSiteAction, &QAction::trigger);
    connect(ui.myOutlineView, &OutlineView::deleteRequested, &m_parts.edits, &PageEdits::deleteTag);
    connect(ui.myOutlineView, &OutlineView::hideRequested, ui.hideAction, &QAction::trigger);
    // Not while the user types into a field of the window.
    for (QAction* const action : {ui.duplicateAction, ui.moveUpAction, ui.moveDownAction}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        ui.myOutlineView->addAction(action);
        ui.contentView->addAction(action);
    }
    connect(ui.openRecentMenu, &QMenu::aboutToShow, this, &PageActions::fillRecentMenu);
    connect(ui.insertMenu, &QMenu::aboutToShow, this, &PageActions::fillInsertMenu);
}

void PageActions::fillRecentMenu()
{
    QMenu& menu = *m_parts.ui.openRecentMenu;
    menu.clear();
    const auto pages = m_recentPages ? m_recentPages() : std::vector<fs::path>();
    for (const fs::path& page : pages)
        menu.addAction(textOf(page).replace(u'&', QStringLiteral("&&")), &m_parts.document,
                       [this, page] { emit m_parts.document.openRequested(page); });
    if (pages.empty())
        menu.addAction(tr("No Recent Pages"))->setEnabled(false);
}

void PageActions::fillInsertMenu()
{
    QMenu& menu = *m_parts.ui.insertMenu;
    menu.clear();
    const QStringList tags = m_parts.rules.insertableTags(m_parts.selection.element());
    for (const QString& tag : tags)
        menu.addAction(tag, &m_parts.edits, [&edits = m_parts.edits, tag] { edits.addTag(tag); });
    if (!tags.isEmpty())
        menu.addSeparator();
    menu.addAction(tr("&More..."), m_parts.ui.insertMoreAction, &QAction::trigger);
}

void PageActions::sendToFocus(const char* slot, int webAction) const
{
    QWidget* const focus = QApplication::focusWidget();
    if (focus && focus->metaObject()->indexOfSlot(QByteArray(slot).append("()").constData()) >= 0)
        QMetaObject::invokeMethod(focus, slot);
    else
        m_parts.rendering.webView()->page()->triggerAction(static_cast<QWebEnginePage::WebAction>(webAction));
}

void PageActions::connectLooks()
{
    const Ui::HTMLDocument& ui = m_parts.ui;
    // Plus needs the shift key on many keyboards.
    ui.zoomInAction->setShortcuts({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
    auto* const widths = new QActionGroup(this);
    for (QAction* const action :
         {ui.phoneWidthAction, ui.tabletWidthAction, ui.desktopWidthAction, ui.freeWidthAction})
        widths->addAction(action);
    connect(ui.browserMenu, &QMenu::aboutToShow, this, &PageActions::fillBrowserMenu);
}

void PageActions::showMedia()
{
    m_parts.rendering.setMedia({m_parts.ui.darkAction->isChecked(), m_parts.ui.printAction->isChecked()});
}

void PageActions::fillBrowserMenu()
{
    QMenu& menu = *m_parts.ui.browserMenu;
    menu.clear();
    for (const auto& browser : otherprograms::applicationsFor(browserType)) {
        QString name = browser.name;
        menu.addAction(browser.icon, name.replace(u'&', QStringLiteral("&&")), &m_parts.document,
                       [&page = m_parts.document, id = browser.id] { page.openWith(id, browserType); });
    }
    if (menu.isEmpty())
        menu.addAction(tr("No Web Browser"))->setEnabled(false);
}

} // namespace luma
