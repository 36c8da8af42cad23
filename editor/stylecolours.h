// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>

class QColor;
class QColorDialog;
class QTreeView;

namespace luma {

class StyleRulesModel;
class ViewController;
struct StyleColour;

/// Lets the user choose the colours in the values of the style rules. The page shows each colour that is tried, in what its
/// engine has parsed alone; the one chosen is reported, and Escape takes it back. Main thread.
class StyleColours final : public QObject
{
    Q_OBJECT

public:
    /// All of them outlive it. The model is the view's.
    StyleColours(QTreeView& view, const StyleRulesModel& model, ViewController& rendering, QObject* parent);

    /// Asks for the colour of a declaration's value, or first for which one if there are several. That of a custom
    /// property is changed where it is set. Nothing happens if there is none, or if it can't be edited.
    void pick(const QModelIndex& index);
    /// While the user chooses, the rows must stay.
    [[nodiscard]] bool isOpen() const;

    static QIcon swatch(const QColor& colour);

signals:
    /// The whole value, with the colour as it was written before.
    void valueChosen(const QModelIndex& index, const QString& value);

private:
    /// `text` is the value that the colour stands in.
    void open(const StyleColour& colour, const QString& text);
    void preview(const QColor& colour);
    [[nodiscard]] QString valueWith(const QColor& colour) const;

    QTreeView& m_view;
    const StyleRulesModel& m_model;
    ViewController& m_rendering;
    QPointer<QColorDialog> m_dialog;
    QPersistentModelIndex m_index;
    QString m_value; // before
    qsizetype m_at = 0;
    qsizetype m_length = 0;
};

} // namespace luma
