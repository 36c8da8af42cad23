// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>
#include <QByteArray>

#include <vector>

namespace luma {

/// A log of any length as rows of text: one UTF-8 buffer and the ends of its lines. What is appended can be
/// read at once and becomes rows with publish(), so that views hear of many lines together. Main thread only.
class LogModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void clear();
    /// Appends text whose lines end with a line feed; the last one may be still without.
    void append(const QString& text);
    /// Shows all that was appended.
    void publish();

    /// The lines appended, shown or not.
    [[nodiscard]] int lineCount() const;
    /// Line `number`, counted from 0, without its line feed; empty when there is none.
    [[nodiscard]] QString lineText(int number) const;
    /// The line with the most bytes; -1 when there is none.
    [[nodiscard]] int longestLine() const { return m_longestLine; }
    /// The whole log, UTF-8.
    [[nodiscard]] const QByteArray& text() const { return m_text; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    QByteArray m_text;
    std::vector<qsizetype> m_ends; // of the finished lines, each the place of its line feed
    int m_shown = 0;
    bool m_isLastShownOpen = false;
    int m_longestLine = -1;
    qsizetype m_longestSize = -1;

    [[nodiscard]] qsizetype lineBegin(int number) const;
    [[nodiscard]] qsizetype lineEnd(int number) const;
    void measure(int number);
};

} // namespace luma
