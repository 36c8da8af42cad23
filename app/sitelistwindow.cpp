// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitelistwindow.h"

#include "app/editmenu.h"
#include "app/helpmenu.h"
#include "app/preferences.h"
#include "app/siteitemdelegate.h"
#include "desktop/icons.h"
#include "desktop/windowregistry.h"
#include "ui_SiteListWindow.h"

#include <QKeyEvent>
#include <QScrollBar>

namespace luma {

namespace {

const QString geometryKey = QStringLiteral("windows/sites/geometry");
const QString splitterKey = QStringLiteral("windows/sites/splitter");

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
    resize(1060, 460);
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
    connect(m_ui->sortAction, &QAction::triggered, this, &SiteListWindow::sortRequested);
    connect(m_ui->importAction, &QAction::triggered, this, &SiteListWindow::importRequested);
    connect(m_ui->exportAction, &QAction::triggered, this, &SiteListWindow::exportRequested);
    connect(m_ui->removeAction, &QAction::triggered, this, &SiteListWindow::removeRequested);
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
    m_found.setSourceModel(&m_sites);
    m_found.setFilterRole(SiteList::SearchRole);
    m_found.setFilterCaseSensitivity(Qt::CaseInsensitive);
    // The record being edited stays visible even if it no longer matches the search.
    m_found.setDynamicSortFilter(false);
    m_ui->sitesTableView->setModel(&m_found);
    m_ui->sitesTableView->setItemDelegate(new SiteItemDelegate(m_ui->sitesTableView));
    // In a text field the same keys edit the text.
    m_ui->sitesTableView->addAction(m_ui->removeAction);
    m_ui->sitesTableView->installEventFilter(this);
    m_ui->searchField->installEventFilter(this);
    connect(m_ui->searchField, &QLineEdit::textChanged, this, &SiteListWindow::search);
    connect(m_ui->sitesTableView, &QListView::doubleClicked, this, &SiteListWindow::openRequested);
    connect(m_ui->sitesTableView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &SiteListWindow::showSelected);
    connect(&m_found, &QAbstractItemModel::modelReset, this, &SiteListWindow::showSelected);
    connect(&m_found, &QAbstractItemModel::rowsInserted, this, &SiteListWindow::showSelected);
    connect(&m_found, &QAbstractItemModel::rowsRemoved, this, &SiteListWindow::showSelected);
    m_ui->addButton->setIcon(icons::symbol(QStringLiteral("add")));
    m_ui->removeButton->setIcon(icons::symbol(QStringLiteral("remove")));
    connect(m_ui->addButton, &QPushButton::clicked, this, &SiteListWindow::addRequested);
    connect(m_ui->newSiteButton, &QPushButton::clicked, this, &SiteListWindow::addRequested);
    connect(m_ui->sampleSiteButton, &QPushButton::clicked, this, &SiteListWindow::sampleRequested);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &SiteListWindow::removeRequested);
}

void SiteListWindow::connectForm()
{
    connect(m_ui->siteForm, &SiteForm::openRequested, this, &SiteListWindow::openRequested);
    connect(m_ui->siteForm, &SiteForm::folderRequested, this, &SiteListWindow::folderRequested);
}

int SiteListWindow::selectedRow() const
{
    return m_found.mapToSource(m_ui->sitesTableView->currentIndex()).row();
}

void SiteListWindow::select(int row)
{
    const QModelIndex wanted = m_sites.index(row);
    if (wanted.isValid() && !m_found.mapFromSource(wanted).isValid())
        m_ui->searchField->clear();
    const QModelIndex shown = m_found.mapFromSource(wanted);
    m_ui->sitesTableView->setCurrentIndex(shown);
    m_ui->sitesTableView->scrollTo(shown);
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
    const int before = selectedRow();
    m_found.setFilterFixedString(text);
    // Keep the selection while the search finds it, otherwise select the first match.
    const QModelIndex kept = m_found.mapFromSource(m_sites.index(before));
    m_ui->sitesTableView->setCurrentIndex(kept.isValid() ? kept : m_found.index(0, 0));
    m_ui->sitesTableView->scrollTo(m_ui->sitesTableView->currentIndex());
    showSelected();
}

void SiteListWindow::showSelected()
{
    m_ui->siteForm->setRecord(m_sites.record(selectedRow()));
    const bool nothing = m_found.rowCount() == 0;
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
    m_ui->removeButton->setEnabled(selected);
    m_ui->exportAction->setEnabled(m_sites.rowCount() > 0);
    m_ui->sortAction->setEnabled(m_sites.rowCount() > 1);
}

bool SiteListWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && handleKey(watched, static_cast<QKeyEvent*>(event)->key()))
        return true;
    return QMainWindow::eventFilter(watched, event);
}

bool SiteListWindow::handleKey(const QObject* watched, int key)
{
    const bool inList = watched == m_ui->sitesTableView;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        emit openRequested();
        return true;
    }
    if (inList && key == Qt::Key_Delete) {
        emit removeRequested();
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

void SiteListWindow::setUndo(const std::optional<QString>& removedName)
{
    // A single ampersand would mark a mnemonic.
    QString name = removedName.value_or(QString());
    name.replace(u'&', QStringLiteral("&&"));
    m_ui->undoAction->setText(removedName ? tr("&Undo removal of “%1”").arg(name) : tr("&Undo"));
    m_ui->undoAction->setEnabled(removedName.has_value());
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
}

void SiteListWindow::saveTo(Preferences& preferences) const
{
    preferences.setValue(geometryKey, saveGeometry());
    preferences.setValue(splitterKey, m_ui->splitter->saveState());
}

} // namespace luma
