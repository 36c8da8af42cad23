// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>
#include <QByteArray>

#include <vector>

namespace luma {

/// A log of any length as rows of text: one UTF-8 buffer and the ends of its lines. Appended text can be read
/// at once but becomes rows only in publish(), so that views are told of many lines together. Main thread
/// only.
class LogModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void clear();
    /// Appends text whose lines end with a line feed. The last line may be unfinished.
    void append(const QString& text);
    /// Turns all appended lines into rows.
    void publish();

    /// The number of lines appended, shown or not.
    [[nodiscard]] int lineCount() const;
    /// Line `number`, counted from 0, without its line feed; empty for a number out of range.
    [[nodiscard]] QString lineText(int number) const;
    /// The number of the line with the most bytes; -1 for an empty log.
    [[nodiscard]] int longestLine() const { return m_longestLine; }
    /// The whole log, UTF-8.
    [[nodiscard]] const QByteArray& text() const { return m_text; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    QByteArray m_text;
    std::vector<qsizetype> m_ends; // the positions of the line feeds
    int m_shown = 0;
    bool m_isLastShownOpen = false;
    int m_longestLine = -1;
    qsizetype m_longestSize = -1;

    [[nodiscard]] qsizetype lineBegin(int number) const;
    [[nodiscard]] qsizetype lineEnd(int number) const;
    void measure(int number);
};

} // namespace luma
