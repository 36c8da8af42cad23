// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelistwindow.h"

#include "app/editmenu.h"
#include "app/helpmenu.h"
#include "app/preferences.h"
#include "desktop/icons.h"
#include "desktop/screenroom.h"
#include "desktop/windowregistry.h"
#include "ui_SiteListWindow.h"

#include <QKeyEvent>
#include <QScrollBar>

namespace luma {

namespace {

const QString geometryKey = QStringLiteral("windows/sites/geometry");
const QString splitterKey = QStringLiteral("windows/sites/splitter");
const QString sortedKey = QStringLiteral("windows/sites/sortedByName");
const QString closedKey = QStringLiteral("windows/sites/closedFolders");

} // namespace

SiteListWindow::SiteListWindow(SiteList& sites, QWidget* parent)
    : QMainWindow(parent), m_sites(sites), m_ui(std::make_unique<Ui::SiteListWindow>())
{
    m_ui->setupUi(this);
    // The form scrolls vertically only.
    m_ui->formArea->setMinimumWidth(m_ui->siteForm->minimumSizeHint().width() +
                                    m_ui->formArea->verticalScrollBar()->sizeHint().width());
    m_ui->splitter->setStretchFactor(1, 1);
    m_ui->splitter->setSizes({280, 760});
    setMinimumHeight(320);
    resize(1060, qRound(460 * textGrowth(*this)));
    fitHeightToScreen(*this);
    m_ui->sitesTableView->setFocus();
    WindowRegistry::instance().fill(m_ui->windowsMenu);
    addTextActions(*m_ui->editMenu);
    fillHelpMenu(*m_ui->helpMenu, *this);
    connectActions();
    connectList();
    connectForm();
    showSaveError({});
    showNotice({});
    showSelected();
}

SiteListWindow::~SiteListWindow() = default;

void SiteListWindow::connectActions()
{
    connect(m_ui->addAction, &QAction::triggered, this, &SiteListWindow::addRequested);
    connect(m_ui->sampleAction, &QAction::triggered, this, &SiteListWindow::sampleRequested);
    connect(m_ui->duplicateAction, &QAction::triggered, this, &SiteListWindow::duplicateRequested);
    connect(m_ui->sortAction, &QAction::toggled, m_ui->sitesTableView, &SiteListView::setSortedByName);
    connect(m_ui->importAction, &QAction::triggered, this, &SiteListWindow::importRequested);
    connect(m_ui->exportAction, &QAction::triggered, this, &SiteListWindow::exportRequested);
    connect(m_ui->removeAction, &QAction::triggered, this, &SiteListWindow::removeSelected);
    connect(m_ui->undoAction, &QAction::triggered, this, &SiteListWindow::undoRequested);
    connect(m_ui->openAction, &QAction::triggered, this, &SiteListWindow::openRequested);
    connect(m_ui->preferencesAction, &QAction::triggered, this, &SiteListWindow::preferencesRequested);
    connect(m_ui->productPageAction, &QAction::triggered, this, &SiteListWindow::productPageRequested);
    connect(m_ui->updateAction, &QAction::triggered, this, &SiteListWindow::updateRequested);
    connect(m_ui->closeAction, &QAction::triggered, this, &QWidget::close);
    connect(m_ui->quitAction, &QAction::triggered, this, &SiteListWindow::quitRequested);
    connect(m_ui->sourcePathAction, &QAction::triggered, this,
            [this] { emit folderRequested(SiteSide::Source); });
    connect(m_ui->destinationPathAction, &QAction::triggered, this,
            [this] { emit folderRequested(SiteSide::Destination); });
    connect(m_ui->searchAction, &QAction::triggered, m_ui->searchField, qOverload<>(&QWidget::setFocus));
    connect(m_ui->searchAction, &QAction::triggered, m_ui->searchField, &QLineEdit::selectAll);
}

void SiteListWindow::connectList()
{
    m_ui->sitesTableView->setSites(m_sites);
    // In a text field the same keys edit the text.
    m_ui->sitesTableView->addAction(m_ui->removeAction);
    m_ui->sitesTableView->installEventFilter(this);
    m_ui->searchField->installEventFilter(this);
    connect(m_ui->searchField, &QLineEdit::textChanged, this, &SiteListWindow::search);
    connect(m_ui->sitesTableView, &QTreeView::doubleClicked, this, &SiteListWindow::openRequested);
    connect(m_ui->sitesTableView, &SiteListView::selectionMoved, this, &SiteListWindow::showSelected);
    connect(m_ui->sitesTableView, &QWidget::customContextMenuRequested, this, [this](const QPoint& place) {
        m_ui->siteMenu->popup(m_ui->sitesTableView->viewport()->mapToGlobal(place));
    });
    connectFolders();
    m_ui->addButton->setIcon(icons::symbol(QStringLiteral("add")));
    m_ui->removeButton->setIcon(icons::symbol(QStringLiteral("remove")));
    connect(m_ui->addButton, &QPushButton::clicked, this, &SiteListWindow::addRequested);
    connect(m_ui->newSiteButton, &QPushButton::clicked, this, &SiteListWindow::addRequested);
    connect(m_ui->sampleSiteButton, &QPushButton::clicked, this, &SiteListWindow::sampleRequested);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &SiteListWindow::removeSelected);
}

void SiteListWindow::connectForm()
{
    connect(m_ui->siteForm, &SiteForm::openRequested, this, &SiteListWindow::openRequested);
    connect(m_ui->siteForm, &SiteForm::folderRequested, this, &SiteListWindow::folderRequested);
}

void SiteListWindow::connectFolders()
{
    SiteListView* const list = m_ui->sitesTableView;
    connect(m_ui->folderMenu, &QMenu::aboutToShow, list,
            [this, list] { list->fillFolderMenu(*m_ui->folderMenu); });
    connect(m_ui->newFolderAction, &QAction::triggered, list, &SiteListView::addFolder);
    connect(m_ui->renameFolderAction, &QAction::triggered, list, &SiteListView::renameFolder);
    connect(m_ui->removeFolderAction, &QAction::triggered, list, &SiteListView::removeFolder);
    connect(m_ui->moveUpAction, &QAction::triggered, list, [list] { list->stepSelected(-1); });
    connect(m_ui->moveDownAction, &QAction::triggered, list, [list] { list->stepSelected(1); });
}

int SiteListWindow::selectedRow() const
{
    return m_ui->sitesTableView->selectedRow();
}

void SiteListWindow::select(int row)
{
    if (m_sites.record(row) && !m_ui->sitesTableView->finds(row))
        m_ui->searchField->clear();
    m_ui->sitesTableView->select(row);
}

void SiteListWindow::removeSelected()
{
    if (m_ui->sitesTableView->selectedFolder().isEmpty())
        emit removeRequested();
    else
        m_ui->sitesTableView->removeFolder();
}

void SiteListWindow::editNameOf(int row)
{
    select(row);
    m_ui->formArea->ensureVisible(0, 0);
    m_ui->siteForm->editName();
}

void SiteListWindow::setUpdateEnabled(bool enabled)
{
    m_ui->updateAction->setEnabled(enabled);
}

void SiteListWindow::search(const QString& text)
{
    m_ui->sitesTableView->search(text);
}

void SiteListWindow::showSelected()
{
    m_ui->siteForm->setRecord(m_sites.record(selectedRow()));
    const bool nothing = m_ui->sitesTableView->isEmpty();
    m_ui->sitesTableView->setVisible(!nothing);
    m_ui->emptyListLabel->setVisible(nothing);
    m_ui->emptyListLabel->setText(m_sites.rowCount() == 0 ? tr("No sites yet")
                                                          : tr("No site matches the search."));
    m_ui->formArea->setVisible(m_sites.rowCount() > 0);
    m_ui->firstStart->setVisible(m_sites.rowCount() == 0);
    updateActions();
}

void SiteListWindow::updateActions()
{
    const bool selected = selectedRow() >= 0;
    for (QAction* action : {m_ui->openAction, m_ui->removeAction, m_ui->duplicateAction,
                            m_ui->sourcePathAction, m_ui->destinationPathAction})
        action->setEnabled(selected);
    const SiteListView& list = *m_ui->sitesTableView;
    const bool isFolder = !list.selectedFolder().isEmpty();
    m_ui->removeButton->setEnabled(selected || isFolder);
    m_ui->folderMenu->setEnabled(selected);
    m_ui->newFolderAction->setEnabled(selected);
    m_ui->renameFolderAction->setEnabled(isFolder);
    m_ui->removeFolderAction->setEnabled(isFolder);
    m_ui->moveUpAction->setEnabled(list.canStep(-1));
    m_ui->moveDownAction->setEnabled(list.canStep(1));
    m_ui->exportAction->setEnabled(m_sites.rowCount() > 0);
}

bool SiteListWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
        return true;
    return QMainWindow::eventFilter(watched, event);
}

bool SiteListWindow::handleKey(const QObject* watched, int key)
{
    SiteListView* const list = m_ui->sitesTableView;
    const bool inList = watched == list;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (list->selectedFolder().isEmpty())
            emit openRequested();
        else
            list->setExpanded(list->currentIndex(), !list->isExpanded(list->currentIndex()));
        return true;
    }
    if (inList && key == Qt::Key_Delete) {
        removeSelected();
        return true;
    }
    if (!inList && key == Qt::Key_Down) {
        m_ui->sitesTableView->setFocus();
        return true;
    }
    if (!inList && key == Qt::Key_Escape) {
        m_ui->searchField->clear();
        return true;
    }
    return false;
}

void SiteListWindow::setUndo(const QString& text)
{
    m_ui->undoAction->setText(text.isEmpty() ? tr("&Undo") : text);
    m_ui->undoAction->setEnabled(!text.isEmpty());
}

void SiteListWindow::showSaveError(const QString& reason)
{
    m_ui->saveErrorLabel->setText(tr("The list of sites is not saved. %1").arg(reason));
    m_ui->saveErrorLabel->setVisible(!reason.isEmpty());
}

void SiteListWindow::showNotice(const QString& text)
{
    m_ui->noticeLabel->setText(text);
    m_ui->noticeLabel->setVisible(!text.isEmpty());
}

void SiteListWindow::restoreFrom(const Preferences& preferences)
{
    restoreGeometry(preferences.value(geometryKey).toByteArray());
    m_ui->splitter->restoreState(preferences.value(splitterKey).toByteArray());
    m_ui->sortAction->setChecked(preferences.value(sortedKey).toBool());
    m_ui->sitesTableView->setClosedFolders(preferences.value(closedKey).toStringList());
}

void SiteListWindow::saveTo(Preferences& preferences) const
{
    preferences.setValue(geometryKey, saveGeometry());
    preferences.setValue(splitterKey, m_ui->splitter->saveState());
    preferences.setValue(sortedKey, m_ui->sortAction->isChecked());
    preferences.setValue(closedKey, m_ui->sitesTableView->closedFolders());
}

} // namespace luma
