// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/logmodel.h"

namespace luma {

void LogModel::clear()
{
    beginResetModel();
    m_text = QByteArray();
    m_ends = {};
    m_shown = 0;
    m_isLastShownOpen = false;
    m_longestLine = -1;
    m_longestSize = -1;
    endResetModel();
}

void LogModel::append(const QString& text)
{
    qsizetype from = m_text.size();
    m_text.append(text.toUtf8());
    for (qsizetype end = m_text.indexOf('\n', from); end >= 0; end = m_text.indexOf('\n', end + 1)) {
        m_ends.push_back(end);
        measure(static_cast<int>(m_ends.size()) - 1);
    }
    if (lineCount() > static_cast<int>(m_ends.size()))
        measure(lineCount() - 1);
}

void LogModel::measure(int number)
{
    const qsizetype size = lineEnd(number) - lineBegin(number);
    if (size <= m_longestSize)
        return;
    m_longestSize = size;
    m_longestLine = number;
}

void LogModel::publish()
{
    if (m_isLastShownOpen)
        emit dataChanged(index(m_shown - 1), index(m_shown - 1));
    const int count = lineCount();
    if (count > m_shown) {
        beginInsertRows({}, m_shown, count - 1);
        m_shown = count;
        endInsertRows();
    }
    m_isLastShownOpen = count > static_cast<int>(m_ends.size());
}

int LogModel::lineCount() const
{
    const qsizetype finished = m_ends.empty() ? 0 : m_ends.back() + 1;
    return static_cast<int>(m_ends.size()) + (m_text.size() > finished ? 1 : 0);
}

qsizetype LogModel::lineBegin(int number) const
{
    return number == 0 ? 0 : m_ends[static_cast<std::size_t>(number) - 1] + 1;
}

qsizetype LogModel::lineEnd(int number) const
{
    const auto line = static_cast<std::size_t>(number);
    return line < m_ends.size() ? m_ends[line] : m_text.size();
}

QString LogModel::lineText(int number) const
{
    if (number < 0 || number >= lineCount())
        return {};
    const qsizetype begin = lineBegin(number);
    return QString::fromUtf8(m_text.constData() + begin, lineEnd(number) - begin);
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_shown;
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    return lineText(index.row());
}

} // namespace luma
