// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStyledItemDelegate>

namespace luma {

class CssVocabulary;
class StyleColours;
class StyleRulesModel;
class ViewController;

/// Edits the value of a declaration, or a further declaration in an empty field: with completions, with steps of numbers that
/// the rendering shows at once, and with swatches that ask for a colour. Main thread.
class DeclarationDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// All of them outlive it.
    DeclarationDelegate(const StyleRulesModel& model, StyleColours& colours, CssVocabulary& vocabulary,
                        ViewController& rendering, QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    const StyleRulesModel& m_model;
    StyleColours& m_colours;
    CssVocabulary& m_vocabulary;
    ViewController& m_rendering;
};

} // namespace luma
