// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/documentactions.h"

#include "base/pathtext.h"
#include "editor/htmldocument.h"
#include "editor/pageedits.h"
#include "editor/pagesaver.h"
#include "ui_HTMLDocument.h"

#include <utility>

namespace luma {

namespace fs = std::filesystem;

DocumentActions::DocumentActions(Ui::HTMLDocument& ui, HTMLDocument& document, const PageStore& store,
                                 RecentPages recentPages)
    : QObject(&document),
      m_ui(ui),
      m_document(document),
      m_store(store),
      m_recentPages(std::move(recentPages))
{
    connect(ui.newAction, &QAction::triggered, &document, &HTMLDocument::newRequested);
    connect(ui.openRecentMenu, &QMenu::aboutToShow, this, &DocumentActions::fillRecentMenu);
    connect(ui.revertAction, &QAction::triggered, &document, &HTMLDocument::revertDocumentToSaved);
    connect(ui.closeAction, &QAction::triggered, &document, &HTMLDocument::close);
}

void DocumentActions::connectTo(PageSaver& saver, PageEdits& edits)
{
    connect(m_ui.openAction, &QAction::triggered, &saver, &PageSaver::openPanel);
    connect(m_ui.saveAction, &QAction::triggered, &saver, [&saver] { saver.save({}); });
    connect(m_ui.saveAsAction, &QAction::triggered, &saver, [&saver] { saver.saveAs({}); });
    connect(m_ui.undoAction, &QAction::triggered, &edits, &PageEdits::undo);
    connect(m_ui.redoAction, &QAction::triggered, &edits, &PageEdits::redo);
}

void DocumentActions::fillRecentMenu()
{
    m_ui.openRecentMenu->clear();
    const auto pages = m_recentPages ? m_recentPages() : std::vector<fs::path>();
    for (const fs::path& page : pages)
        m_ui.openRecentMenu->addAction(textOf(page).replace(u'&', QStringLiteral("&&")), &m_document,
                                       [this, page] { emit m_document.openRequested(page); });
    if (pages.empty())
        m_ui.openRecentMenu->addAction(tr("No Recent Pages"))->setEnabled(false);
}

void DocumentActions::update()
{
    for (QAction* action :
         {m_ui.saveAction, m_ui.saveAsAction, m_ui.pageTitleAction, m_ui.reloadAction, m_ui.showSourceAction,
          m_ui.inspectElementAction, m_ui.makeLinkAction, m_ui.editLinkAction, m_ui.removeLinkAction,
          m_ui.insertImageAction, m_ui.boldAction, m_ui.italicAction, m_ui.underlineAction})
        action->setEnabled(m_store.hasPage());
    m_ui.formatBar->setEnabled(m_store.hasPage());
    m_ui.formatMenu->setEnabled(m_store.hasPage());
    const QUndoStack& stack = *m_document.undoStack();
    m_ui.revertAction->setEnabled(m_store.hasFile());
    m_ui.undoAction->setEnabled(stack.canUndo());
    m_ui.redoAction->setEnabled(stack.canRedo());
    m_ui.undoAction->setText(tr("&Undo %1").arg(stack.undoText()).trimmed());
    m_ui.redoAction->setText(tr("&Redo %1").arg(stack.redoText()).trimmed());
}

} // namespace luma
