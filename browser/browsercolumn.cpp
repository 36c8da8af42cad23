// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browsercolumn.h"

#include "browser/browserlistview.h"
#include "browser/filesystembrowsercell.h"
#include "browser/filesystemmodel.h"
#include "browser/iconpreviewcontroller.h"

#include <QBoxLayout>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace luma {

namespace {

constexpr int widestFit = 600;

/// The line at the far side of a column. Dragging it changes the column's width, a double click fits the column
/// to its names.
class ColumnHandle final : public QWidget
{
    Q_OBJECT

public:
    explicit ColumnHandle(QWidget* parent) : QWidget(parent)
    {
        setFixedWidth(5);
        setCursor(Qt::SplitHCursor);
    }

signals:
    /// The mouse has moved away from the column by `delta` pixels since the last signal.
    void dragged(int delta);
    void released();
    void fitRequested();

protected:
    void mousePressEvent(QMouseEvent* event) override { m_lastX = qRound(event->globalPosition().x()); }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        const int x = qRound(event->globalPosition().x());
        if (event->buttons().testFlag(Qt::LeftButton) && x != m_lastX)
            emit dragged(isRightToLeft() ? m_lastX - x : x - m_lastX);
        m_lastX = x;
    }
    void mouseReleaseEvent(QMouseEvent* /*event*/) override { emit released(); }
    void mouseDoubleClickEvent(QMouseEvent* /*event*/) override { emit fitRequested(); }
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), palette().color(QPalette::Base));
        painter.fillRect(QRect(width() / 2, 0, 1, height()), palette().color(QPalette::Mid));
    }

private:
    int m_lastX = 0;
};

} // namespace

BrowserColumn::BrowserColumn(FileSystemModel& model, DropTarget& dropTarget, const QModelIndex& folder,
                             int number, QWidget* parent)
    : QWidget(parent),
      m_model(model),
      m_folder(folder),
      m_isRoot(!folder.isValid()),
      m_list(new BrowserListView(dropTarget, this)),
      m_header(std::make_unique<IconPreviewController>(IconPreviewController::Layout::HeaderView, this))
{
    setObjectName(QStringLiteral("browserColumn%1").arg(number));
    m_list->setObjectName(QStringLiteral("browserList%1").arg(number));
    m_list->setItemDelegate(new FileSystemBrowserCell(m_list));
    m_list->setModel(&m_model);
    m_list->setRootIndex(folder);
    m_header->view()->setBackgroundRole(QPalette::Window);
    m_header->view()->setAutoFillBackground(true);
    auto* rows = new QVBoxLayout;
    rows->setSpacing(0);
    rows->addWidget(m_header->view());
    rows->addWidget(m_list, 1);
    auto* all = new QHBoxLayout(this);
    all->setContentsMargins({});
    all->setSpacing(0);
    all->addLayout(rows, 1);
    connectHandle();
    updateTexts();
}

BrowserColumn::~BrowserColumn() = default;

void BrowserColumn::connectHandle()
{
    auto* handle = new ColumnHandle(this);
    layout()->addWidget(handle);
    connect(handle, &ColumnHandle::dragged, this, &BrowserColumn::changeWidth);
    connect(handle, &ColumnHandle::released, this, [this] { emit resizedByUser(width()); });
    connect(handle, &ColumnHandle::fitRequested, this, &BrowserColumn::fitWidth);
}

QModelIndexList BrowserColumn::selectedRows() const
{
    return m_list->selectionModel() ? m_list->selectionModel()->selectedRows() : QModelIndexList();
}

void BrowserColumn::detach()
{
    m_list->setModel(nullptr);
}

void BrowserColumn::updateTexts()
{
    const FileSystemNodePointer node = m_model.node(m_folder);
    if (!node)
        return;
    m_header->setRepresentedNode(node);
    const QString contents = tr("Contents of %1").arg(node->displayName());
    const QString pane = parentWidget()->accessibleName();
    m_list->setAccessibleName(pane.isEmpty() ? contents : tr("%1: %2").arg(pane, contents));
    if (m_model.isBeingListed(m_folder))
        m_list->setEmptyText(tr("Reading the folder…"));
    else
        m_list->setEmptyText(node->isUnreadable() ? tr("This folder cannot be read.") : tr("Empty folder"));
}

void BrowserColumn::changeWidth(int delta)
{
    setFixedWidth(std::clamp(width() + delta, smallestWidth, largestWidth));
}

void BrowserColumn::fitWidth()
{
    int widest = 0;
    // Only the visible rows: measuring 50,000 names takes long, and the widest may be far out of sight.
    const QModelIndex top = m_list->indexAt(QPoint(1, 1));
    for (QModelIndex row = top; row.isValid() && m_list->visualRect(row).top() < m_list->viewport()->height();
         row = row.siblingAtRow(row.row() + 1))
        widest = std::max(widest, m_list->sizeHintForIndex(row).width());
    setFixedWidth(std::clamp(widest + width() - m_list->viewport()->width(), smallestWidth, widestFit));
    emit resizedByUser(width());
}

} // namespace luma

#include "browsercolumn.moc"
