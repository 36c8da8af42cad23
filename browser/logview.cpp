// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/logview.h"

#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

namespace luma {

namespace {

constexpr int publishInterval = 40; // milliseconds

} // namespace

LogView::LogView(QWidget* parent) : QTableView(parent)
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setModel(&m_log);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setTextElideMode(Qt::ElideNone);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectRows);
    setHorizontalScrollMode(ScrollPerPixel);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(1);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 2);
    m_publishTimer.setSingleShot(true);
    m_publishTimer.setInterval(publishInterval);
    connect(&m_publishTimer, &QTimer::timeout, this, &LogView::publish);
    connect(this, &QTableView::clicked, this,
            [this](const QModelIndex& index) { emit lineActivated(index.row()); });
}

void LogView::clear()
{
    m_publishTimer.stop();
    m_log.clear();
    m_measuredLine = -1;
    m_textWidth = 0;
    updateColumnWidth();
}

void LogView::append(const QString& text)
{
    m_log.append(text);
    if (!m_publishTimer.isActive())
        m_publishTimer.start();
}

bool LogView::isAtEnd() const
{
    return verticalScrollBar()->value() >= verticalScrollBar()->maximum();
}

void LogView::publish()
{
    const bool follows = isAtEnd();
    m_log.publish();
    updateColumnWidth();
    if (follows)
        scrollToBottom();
}

void LogView::showEnd()
{
    m_publishTimer.stop();
    publish();
    scrollToBottom();
}

void LogView::updateColumnWidth()
{
    const int longest = m_log.longestLine();
    if (longest >= 0) {
        const QString text = m_log.lineText(longest);
        if (longest != m_measuredLine || text.size() != m_measuredSize)
            m_textWidth = fontMetrics().horizontalAdvance(text);
        m_measuredLine = longest;
        m_measuredSize = static_cast<int>(text.size());
    }
    const int margins = 2 * (style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1);
    setColumnWidth(0, std::max(m_textWidth + margins + 4, viewport()->width()));
}

void LogView::resizeEvent(QResizeEvent* event)
{
    const bool follows = isAtEnd();
    QTableView::resizeEvent(event);
    updateColumnWidth();
    if (follows)
        scrollToBottom();
}

void LogView::copyAll() const
{
    QApplication::clipboard()->setText(QString::fromUtf8(m_log.text()));
}

void LogView::copySelected() const
{
    QItemSelection selection = selectionModel()->selection();
    std::sort(selection.begin(), selection.end(),
              [](const QItemSelectionRange& a, const QItemSelectionRange& b) { return a.top() < b.top(); });
    QString text;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            text += m_log.lineText(row) + QLatin1Char('\n');
    }
    if (!text.isEmpty())
        QApplication::clipboard()->setText(text);
}

void LogView::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy)) {
        copySelected();
    } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
               currentIndex().isValid()) {
        emit lineActivated(currentIndex().row());
    } else {
        QTableView::keyPressEvent(event);
    }
}

} // namespace luma
