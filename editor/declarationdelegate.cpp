// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/declarationdelegate.h"

#include "editor/csscompletion.h"
#include "editor/numbersteps.h"
#include "editor/stylecolours.h"
#include "editor/stylepreview.h"
#include "editor/stylerulesmodel.h"
#include "editor/stylerulespanel.h"
#include "web/viewcontroller.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QPersistentModelIndex>
#include <QPointer>

namespace luma {

DeclarationDelegate::DeclarationDelegate(const StyleRulesModel& model, StyleColours& colours,
                                         CssVocabulary& vocabulary, ViewController& rendering,
                                         QObject* parent)
    : QStyledItemDelegate(parent),
      m_model(model),
      m_colours(colours),
      m_vocabulary(vocabulary),
      m_rendering(rendering)
{}

QWidget* DeclarationDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                           const QModelIndex& index) const
{
    QWidget* const editor = QStyledItemDelegate::createEditor(parent, option, index);
    const bool isNew = StyleRulesModel::kindOf(index) == StyleRulesModel::Row::NewDeclaration;
    const QString property = isNew ? QString() : index.siblingAtColumn(0).data().toString();
    editor->setAccessibleName(isNew ? StyleRulesPanel::tr("Property and value") : property);
    auto* const field = qobject_cast<QLineEdit*>(editor);
    if (!field)
        return editor;
    auto* const steps = new NumberSteps(field);
    if (!isNew) {
        connect(steps, &NumberSteps::stepped, this,
                [this, property, row = QPersistentModelIndex(index)](const QString& value) {
                    if (const StyleRule* const rule = m_model.ruleOf(row))
                        previewStyle(m_rendering, *rule, property, value);
                });
        connect(field, &QObject::destroyed, &m_rendering,
                [&rendering = m_rendering] { endStylePreview(rendering); });
    }
    new CssCompletion(field, property, m_vocabulary);
    return editor;
}

void DeclarationDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* const field = qobject_cast<QLineEdit*>(editor);
    if (field && StyleRulesModel::kindOf(index) == StyleRulesModel::Row::NewDeclaration)
        field->setPlaceholderText(QStringLiteral("color: red"));
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

// A further declaration needs both columns.
void DeclarationDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                               const QModelIndex& index) const
{
    QStyledItemDelegate::updateEditorGeometry(editor, option, index);
    if (StyleRulesModel::kindOf(index) == StyleRulesModel::Row::NewDeclaration)
        editor->setGeometry(
            QRect(editor->pos(), QSize(editor->parentWidget()->width() - editor->x(), editor->height())));
}

bool DeclarationDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                      const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::MouseButtonDblClick) {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        const QRect swatch =
            item.widget->style()->subElementRect(QStyle::SE_ItemViewItemDecoration, &item, item.widget);
        if (!item.icon.isNull() && swatch.contains(static_cast<QMouseEvent*>(event)->position().toPoint())) {
            m_colours.pick(index);
            return true;
        }
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

// Style sheets read from left to right.
void DeclarationDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    constexpr char16_t isolateLeftToRight = u'\u2066';
    constexpr char16_t endOfIsolate = u'\u2069';
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->direction == Qt::RightToLeft)
        option->text = isolateLeftToRight + option->text + endOfIsolate;
}

} // namespace luma
