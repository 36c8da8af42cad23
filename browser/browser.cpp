// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browser.h"

#include "browser/browsercolumn.h"
#include "browser/browserlistview.h"
#include "browser/enlargedpreview.h"
#include "browser/iconpreviewcontroller.h"

#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>

#include <algorithm>

namespace luma {

namespace {

constexpr int usualWidth = 220;

// The others find a name that begins with their letter.
bool isSilent(int key)
{
    if ((key >= Qt::Key_Home && key <= Qt::Key_PageDown) || (key >= Qt::Key_F1 && key <= Qt::Key_F35))
        return true;
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
        return true;
    default:
        return false;
    }
}

bool asksForDeletion(const QKeyEvent& event)
{
    const bool withControl = event.modifiers().testFlag(Qt::ControlModifier);
    const bool alone = !(event.modifiers() & ~Qt::KeypadModifier);
    return (event.key() == Qt::Key_Delete && (withControl || alone)) ||
           (event.key() == Qt::Key_Backspace && withControl);
}

// A new widget comes last in the window's order, whatever is around it.
QWidget* stopBefore(const QWidget& widget)
{
    QWidget* before = widget.previousInFocusChain();
    while (before != &widget && before->focusPolicy() == Qt::NoFocus)
        before = before->previousInFocusChain();
    return before;
}

} // namespace

Browser::Browser(QWidget* parent) : QScrollArea(parent), m_content(new QWidget), m_beep(&QApplication::beep)
{
    setWidgetResizable(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    makeContent();
    connectModel();
}

void Browser::makeContent()
{
    m_content->setObjectName(QStringLiteral("browserColumns"));
    m_content->setBackgroundRole(QPalette::Base);
    m_preview = new IconPreviewController(IconPreviewController::Layout::PreviewView, m_content);
    m_preview->view()->setObjectName(QStringLiteral("previewView"));
    m_preview->view()->hide();
    m_preview->setParent(this);
    m_emptyLabel = new QLabel(m_content);
    m_emptyLabel->setObjectName(QStringLiteral("emptyText"));
    m_emptyLabel->setAlignment(Qt::AlignCenter);
    m_emptyLabel->setWordWrap(true);
    m_emptyLabel->setTextFormat(Qt::PlainText);
    m_emptyLabel->setForegroundRole(QPalette::PlaceholderText);
    // Columns are inserted before these three.
    auto* columns = new QHBoxLayout(m_content);
    columns->setContentsMargins({});
    columns->setSpacing(0);
    columns->addWidget(m_preview->view());
    columns->addWidget(m_emptyLabel, 1);
    columns->addStretch();
    setWidget(m_content);
}

Browser::~Browser()
{
    // The columns' last signals must not reach a partly destroyed browser.
    m_changing = true;
    for (BrowserColumn* column : m_columns)
        column->detach();
}

void Browser::connectModel()
{
    connect(&m_model, &QAbstractItemModel::modelAboutToBeReset, this, [this] { closeColumnsFrom(0); });
    connect(&m_model, &QAbstractItemModel::modelReset, this, &Browser::rebuild);
    connect(&m_model, &QAbstractItemModel::rowsAboutToBeRemoved, this, &Browser::closeLostColumns);
    connect(&m_model, &FileSystemModel::listedLate, this, &Browser::showLateRows);
}

void Browser::setEmptyText(const QString& text)
{
    m_emptyLabel->setText(text);
}

void Browser::rebuild()
{
    m_emptyLabel->setVisible(!m_model.rootNode());
    if (m_model.rootNode())
        openColumn({});
    emit currentChanged();
}

QModelIndex Browser::parentForItemsInColumn(int column) const
{
    return column >= 0 && column < columnCount() ? m_columns[static_cast<std::size_t>(column)]->folder()
                                                 : QModelIndex();
}

QModelIndexList Browser::shownFolders() const
{
    QModelIndexList folders;
    for (const BrowserColumn* column : m_columns)
        folders.append(column->folder());
    return folders;
}

QModelIndexList Browser::selectedItems() const
{
    return m_currentColumn < 0 ? QModelIndexList()
                               : m_columns[static_cast<std::size_t>(m_currentColumn)]->selectedRows();
}

QModelIndex Browser::currentItem() const
{
    const QModelIndexList rows = selectedItems();
    if (rows.isEmpty())
        return {};
    const QModelIndex current = m_columns[static_cast<std::size_t>(m_currentColumn)]->list().currentIndex();
    return rows.contains(current) ? current : rows.first();
}

QModelIndex Browser::itemBesideSelection() const
{
    const QModelIndexList rows = selectedItems();
    if (rows.isEmpty())
        return {};
    const auto [first, last] = std::minmax_element(rows.begin(), rows.end());
    const QModelIndex next = last->siblingAtRow(last->row() + 1);
    return next.isValid() ? next : first->siblingAtRow(first->row() - 1);
}

void Browser::openColumn(const QModelIndex& folder)
{
    hidePreview();
    m_model.bringUpToDate(folder);
    const int number = columnCount();
    auto* column = new BrowserColumn(m_model, m_dropTarget, folder, number, m_content);
    column->setFixedWidth(number < m_widths.size() ? m_widths[number] : usualWidth);
    m_columns.push_back(column);
    static_cast<QHBoxLayout*>(m_content->layout())->insertWidget(number, column);
    connectColumn(*column, number);
    setTabOrder(number > 0 ? &m_columns[static_cast<std::size_t>(number) - 1]->list() : stopBefore(*this),
                &column->list());
    column->show();
    if (number > 0)
        scrollToEnd();
    else
        setCurrentColumn(0);
    emit listed();
}

void Browser::connectColumn(BrowserColumn& column, int number)
{
    BrowserListView& list = column.list();
    list.installEventFilter(this);
    list.viewport()->installEventFilter(this);
    connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [=, this] { selectionChanged(number); });
    connect(&list, &QListView::doubleClicked, this, &Browser::doubleClicked);
    connect(&list, &BrowserListView::dragStarted, this, [=, this] { m_draggedColumn = number; });
    connect(&list, &BrowserListView::dropped, this, &Browser::dropped);
    connect(&column, &BrowserColumn::resizedByUser, this, [=, this](int width) {
        while (m_widths.size() <= number)
            m_widths.append(usualWidth);
        m_widths[number] = width;
        emit columnWidthsChanged();
    });
}

void Browser::closeColumnsFrom(int number)
{
    hidePreview();
    while (columnCount() > number) {
        BrowserColumn* column = m_columns.back();
        m_columns.pop_back();
        const bool focused = column->isAncestorOf(window()->focusWidget());
        column->hide();
        column->detach();
        // Deleted later, for one of its own signals may have led here; but it is no longer a column.
        column->setParent(nullptr);
        column->deleteLater();
        if (focused && !m_columns.empty())
            m_columns.back()->list().setFocus();
    }
    if (m_currentColumn >= columnCount())
        setCurrentColumn(columnCount() - 1);
}

/// Closed before the rows are removed: a view that loses its folder would show the root instead.
void Browser::closeLostColumns(const QModelIndex& parent, int first, int last)
{
    for (int number = 1; number < columnCount(); ++number) {
        const QModelIndex folder = m_columns[static_cast<std::size_t>(number)]->folder();
        if (folder.parent() == parent && folder.row() >= first && folder.row() <= last) {
            closeColumnsFrom(number);
            return;
        }
    }
}

void Browser::selectionChanged(int number)
{
    if (m_changing || number >= columnCount())
        return;
    const QModelIndexList rows = m_columns[static_cast<std::size_t>(number)]->selectedRows();
    const QModelIndex item = rows.size() == 1 ? rows.first() : QModelIndex();
    const bool opensFolder = item.isValid() && !item.data(FileSystemModel::LeafRole).toBool();
    const bool alreadyOpen =
        opensFolder && columnCount() > number + 1 && parentForItemsInColumn(number + 1) == item;
    if (!alreadyOpen) {
        closeColumnsFrom(number + 1);
        if (opensFolder)
            openColumn(item);
        else if (item.isValid())
            showPreview(item);
    }
    // Clearing the selection right of the current column leads here, too.
    if (!rows.isEmpty())
        makeCurrent(number);
    emit currentChanged();
}

/// The focus moves along where another column has it.
void Browser::makeCurrent(int column)
{
    const bool isOther = column != m_currentColumn;
    setCurrentColumn(column);
    if (column + 1 < columnCount())
        m_columns[static_cast<std::size_t>(column) + 1]->list().selectionModel()->clear();
    BrowserListView& list = m_columns[static_cast<std::size_t>(column)]->list();
    QWidget* const focused = QApplication::focusWidget();
    if (m_content->isAncestorOf(focused) && focused != &list && !list.isAncestorOf(focused))
        list.setFocus();
    if (isOther)
        emit currentChanged();
}

void Browser::setCurrentColumn(int column)
{
    m_currentColumn = column;
    for (int number = 0; number < columnCount(); ++number)
        m_columns[static_cast<std::size_t>(number)]->list().setFocusPolicy(number == column ? Qt::StrongFocus
                                                                                            : Qt::ClickFocus);
}

void Browser::showPreview(const QModelIndex& leaf)
{
    m_preview->setRepresentedNode(m_model.node(leaf));
    m_preview->view()->setVisible(true);
    scrollToEnd();
}

void Browser::hidePreview()
{
    m_preview->view()->setVisible(false);
}

void Browser::scrollToEnd()
{
    // The layout places the new column first.
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_content->layout()->activate();
            horizontalScrollBar()->setValue(horizontalScrollBar()->maximum());
        },
        Qt::QueuedConnection);
}

bool Browser::reveal(const std::filesystem::path& item)
{
    if (!m_model.rootNode())
        return false;
    if (!m_selection.reach(item)) {
        // The item may be newer than the last listing.
        refresh();
        if (!m_selection.reach(item))
            return false;
    }
    for (int number = 0; number < m_currentColumn; ++number) {
        const QModelIndexList rows = m_columns[static_cast<std::size_t>(number)]->selectedRows();
        if (rows.size() == 1 && m_model.node(rows.first())->url() == item)
            makeCurrent(number);
    }
    return true;
}

void Browser::reload()
{
    const Path before = path();
    const bool hadFocus = isAncestorOf(window()->focusWidget()); // while a panel is in front, too
    m_model.reload();
    goTo(before);
    if (hadFocus && m_currentColumn >= 0)
        m_columns[static_cast<std::size_t>(m_currentColumn)]->list().setFocus();
}

void Browser::focusCurrentColumn()
{
    if (m_currentColumn < 0)
        return;
    selectFirstRow();
    m_columns[static_cast<std::size_t>(m_currentColumn)]->list().setFocus();
}

/// Of the current column, if nothing is selected in it.
void Browser::selectFirstRow()
{
    const BrowserListView& list = m_columns[static_cast<std::size_t>(m_currentColumn)]->list();
    if (selectedItems().isEmpty() && m_model.rowCount(list.rootIndex()) > 0)
        list.selectionModel()->setCurrentIndex(m_model.index(0, 0, list.rootIndex()),
                                               QItemSelectionModel::ClearAndSelect);
}

void Browser::refresh()
{
    const Path before = path();
    m_model.refresh(shownFolders());
    if (path() != before)
        goTo(before);
    for (BrowserColumn* column : m_columns)
        column->updateTexts();
    emit listed();
}

/// As far as the folders have been listed; showLateRows() goes on.
void Browser::goTo(const Path& wanted)
{
    setPath(wanted);
    const bool isWaiting = !m_columns.empty() && m_model.isBeingListed(m_columns.back()->folder());
    m_wantedPath = isWaiting && path() != wanted ? wanted : Path();
}

void Browser::showLateRows()
{
    // The user may have gone elsewhere meanwhile.
    const Path now = path();
    if (now.size() < m_wantedPath.size() && std::equal(now.begin(), now.end(), m_wantedPath.begin()))
        goTo(Path(m_wantedPath));
    for (BrowserColumn* column : m_columns)
        column->updateTexts();
    emit listed();
}

void Browser::updateTexts()
{
    for (BrowserColumn* column : m_columns)
        column->updateTexts();
    if (!m_preview->view()->isHidden())
        m_preview->setRepresentedNode(m_preview->representedNode());
}

bool Browser::enter(const QModelIndex& item)
{
    const bool wasPackage = m_model.openPackage(item);
    if (!item.isValid() || item.data(FileSystemModel::LeafRole).toBool())
        return false;
    for (int number = 0; number < columnCount(); ++number) {
        if (parentForItemsInColumn(number) != item.parent())
            continue;
        BrowserListView& list = m_columns[static_cast<std::size_t>(number)]->list();
        // Selected anew, for what opened with the package was its preview.
        if (wasPackage)
            list.selectionModel()->clear();
        list.setCurrentIndex(item);
        moveOn(number);
        return true;
    }
    return false;
}

// NOLINTNEXTLINE(readability-make-member-function-const): it changes what is shown
void Browser::selectAll()
{
    if (m_currentColumn >= 0)
        m_columns[static_cast<std::size_t>(m_currentColumn)]->list().selectAll();
}

void Browser::rename(const QModelIndex& item)
{
    for (const BrowserColumn* column : m_columns) {
        if (item.isValid() && column->folder() == item.parent()) {
            column->list().scrollTo(item);
            column->list().edit(item);
            return;
        }
    }
}

void Browser::setColumnWidths(const QList<int>& widths)
{
    m_widths = widths;
    for (int& width : m_widths)
        width = std::clamp(width, BrowserColumn::smallestWidth, BrowserColumn::largestWidth);
    for (int number = 0; number < columnCount() && number < m_widths.size(); ++number)
        m_columns[static_cast<std::size_t>(number)]->setFixedWidth(m_widths[number]);
}

int Browser::columnOfList(const QObject* list) const
{
    for (int number = 0; number < columnCount(); ++number) {
        const BrowserListView& candidate = m_columns[static_cast<std::size_t>(number)]->list();
        if (list == &candidate || list == candidate.viewport())
            return number;
    }
    return -1;
}

bool Browser::eventFilter(QObject* watched, QEvent* event)
{
    const int column = columnOfList(watched);
    if (column < 0)
        return QScrollArea::eventFilter(watched, event);
    // The editor of a name passes on keys that it has handled; the browser must ignore them.
    const bool fromEditor = qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr;
    if (event->type() == QEvent::KeyPress)
        return !fromEditor && handleKey(column, *static_cast<QKeyEvent*>(event));
    if (event->type() == QEvent::ContextMenu) {
        askForMenu(column, *static_cast<QContextMenuEvent*>(event));
        return true;
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::MouseButtonPress)
        makeCurrent(column);
    if (event->type() == QEvent::FocusIn) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason)
            selectFirstRow();
    }
    return QScrollArea::eventFilter(watched, event);
}

void Browser::askForMenu(int column, const QContextMenuEvent& event)
{
    BrowserListView& list = m_columns[static_cast<std::size_t>(column)]->list();
    const bool byKey = event.reason() == QContextMenuEvent::Keyboard;
    const QModelIndex item =
        byKey ? list.currentIndex() : list.indexAt(list.viewport()->mapFromGlobal(event.globalPos()));
    makeCurrent(column);
    if (item.isValid() && !list.selectionModel()->isSelected(item))
        list.setCurrentIndex(item);
    emit contextMenuRequested(item, byKey ? list.viewport()->mapToGlobal(list.visualRect(item).bottomLeft())
                                          : event.globalPos());
}

/// True if the key needs no further handling.
bool Browser::handleKey(int column, const QKeyEvent& event)
{
    if (asksForDeletion(event)) {
        emit deleteRequested();
        return true;
    }
    if (!isSilent(event.key()))
        m_beep();
    const QModelIndex current = m_columns[static_cast<std::size_t>(column)]->list().currentIndex();
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        if ((event.key() == Qt::Key_Right) == isRightToLeft())
            moveBack(column);
        else
            moveOn(column);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (current.isValid())
            emit doubleClicked(current);
        return true;
    case Qt::Key_Space:
        showEnlarged();
        return true;
    default:
        return false;
    }
}

void Browser::moveBack(int column)
{
    if (column == 0)
        return;
    makeCurrent(column - 1);
    ensureWidgetVisible(m_columns[static_cast<std::size_t>(column) - 1], 0, 0);
}

void Browser::moveOn(int column)
{
    if (column + 1 >= columnCount())
        return;
    makeCurrent(column + 1);
    selectFirstRow();
}

void Browser::showEnlarged()
{
    if (!currentItem().isValid())
        return;
    if (!m_enlarged) {
        m_enlarged = new EnlargedPreview(this);
        connect(m_enlarged, &QDialog::finished, this, [this] { m_enlarged.clear(); });
        connect(this, &Browser::currentChanged, m_enlarged, [this] { updateEnlarged(); });
        connect(m_enlarged, &EnlargedPreview::arrowPressed, this, [this](int key) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            if (m_currentColumn >= 0)
                QApplication::sendEvent(&m_columns[static_cast<std::size_t>(m_currentColumn)]->list(),
                                        &press);
        });
    }
    updateEnlarged();
}

void Browser::updateEnlarged()
{
    if (!m_enlarged)
        return;
    if (const QModelIndex item = currentItem(); item.isValid())
        m_enlarged->showNode(m_model.node(item));
    else
        m_enlarged->close();
}

} // namespace luma
