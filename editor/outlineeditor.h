// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPersistentModelIndex>

#include <string>
#include <vector>

class QKeyEvent;
class QLineEdit;

namespace luma {

class OutlineView;
class PageEdits;

/// Edits an element in its row of the outline: the tag first, with Tab its attributes one after the other, and at last a new
/// one; or a text or comment. Return and Tab make the edit; if it is refused, the field stays. Escape leaves it. Main thread.
class OutlineEditor final : public QObject
{
    Q_OBJECT

public:
    /// Both outlive it. Opens when the view asks for it, but not for the title, which has a sheet, nor for server code.
    OutlineEditor(OutlineView& view, PageEdits& edits, QObject* parent);

signals:
    /// The row's text is no text for one line.
    void sheetRequested(const QModelIndex& row);
    /// A row can't be edited, for this reason.
    void refused(const QString& reason);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class After { Close, Next, Previous };

    void begin(const QModelIndex& row);
    [[nodiscard]] bool takeKey(const QKeyEvent& key);
    void open(int part);
    void openText();
    void show();
    void commit(After after);
    void goOn(bool isDone, After after);
    void place();
    void close();

    OutlineView& m_view;
    PageEdits& m_edits;
    QLineEdit* m_field;
    QPersistentModelIndex m_row;
    bool m_isOpen = false;
    bool m_isText = false;
    int m_part = 0; // 0: the tag, then the attributes, behind them a new one
    std::vector<std::string> m_attributes;
};

} // namespace luma
