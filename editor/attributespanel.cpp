// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/attributespanel.h"

#include "editor/attributesmodel.h"
#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "editor/pageedits.h"
#include "page/elementattributes.h"
#include "page/elementchange.h"
#include "page/pagetree.h"
#include "page/subtreechange.h"
#include "page/tagrules.h"
#include "web/viewcontroller.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeView>

#include <algorithm>
#include <cmath>

namespace luma {

namespace {

/// Edits a value in its row: keywords are offered, but others may be typed.
class ValueDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override
    {
        const auto* const model = qobject_cast<const AttributesModel*>(index.model());
        const ElementAttribute* const attribute = model ? model->attribute(index) : nullptr;
        if (!attribute)
            return nullptr;
        QWidget* editor = nullptr;
        if (attribute->kind == AttributeKind::Keyword) {
            auto* const box = new QComboBox(parent);
            box->setEditable(true);
            box->addItems(attribute->keywords);
            editor = box;
        } else {
            editor = QStyledItemDelegate::createEditor(parent, option, index);
        }
        editor->setAccessibleName(QString::fromStdString(attribute->name));
        return editor;
    }
};

bool isImage(const html::Element* element)
{
    return element && element->is("img");
}

bool isInLink(const html::Element& element)
{
    for (const html::Node* node = element.parent(); node; node = node->parent()) {
        if (node->asElement() && node->asElement()->is("a") && node->asElement()->hasAttr("href"))
            return true;
    }
    return false;
}

bool isSide(const std::string& attribute)
{
    return attribute == "width" || attribute == "height";
}

} // namespace

AttributesPanel::AttributesPanel(const Controls& controls, const PageTree& tree, OutlineSelection& selection,
                                 PageEdits& edits, ViewController& rendering, QObject* parent)
    : QObject(parent),
      m_controls(controls),
      m_model(new AttributesModel(this)),
      m_selection(selection),
      m_edits(edits),
      m_rendering(rendering)
{
    QTreeView& table = *controls.table;
    table.setModel(m_model);
    table.setItemDelegateForColumn(AttributesModel::ValueColumn, new ValueDelegate(this));
    connect(m_model, &QAbstractItemModel::modelReset, this, &AttributesPanel::fitNames);
    table.installEventFilter(this);
    table.viewport()->installEventFilter(this); // gets its width after the table
    controls.altText->installEventFilter(this);
    connect(m_model, &AttributesModel::valueChosen, this, &AttributesPanel::setValue);
    connect(m_model, &AttributesModel::removalChosen, this, &AttributesPanel::remove);
    connect(&selection, &OutlineSelection::changed, this, &AttributesPanel::showSelected);
    connect(&tree, &PageTree::reset, this, &AttributesPanel::showSelected);
    connect(&tree, &PageTree::attributesSwapped, this, [this](const html::Element* element) {
        if (element == OutlineModel::elementAt(m_row))
            update();
    });
    connect(controls.decorativeButton, &QPushButton::clicked, this,
            [this] { m_edits.changeAttribute(m_row, {}, QStringLiteral("alt=\"\""), {}); });
    connect(controls.linkButton, &QPushButton::clicked, this, &AttributesPanel::editLink);
    showSelected();
}

void AttributesPanel::showSelected()
{
    const QPersistentModelIndex row = m_selection.index();
    const html::Element* const element = OutlineModel::elementAt(row);
    if (m_row != row || !element) {
        m_row = row;
        m_model->setAttributes(element ? attributesFor(*element) : std::vector<ElementAttribute>(),
                               AttributesModel::Of::AnotherElement);
        m_controls.table->setCurrentIndex(m_model->index(0, AttributesModel::ValueColumn));
    }
    updateControls(element);
}

void AttributesPanel::update()
{
    const html::Element* const element = OutlineModel::elementAt(m_row);
    m_model->setAttributes(attributesFor(*element), AttributesModel::Of::TheSame);
    updateControls(element);
}

void AttributesPanel::updateControls(const html::Element* element)
{
    m_controls.title->setText(element ? tr("Attributes of <%1>").arg(tagNameOf(*element)) : tr("Attributes"));
    m_controls.table->setEnabled(element);
    m_controls.altNotice->setVisible(isImage(element) && !element->hasAttr("alt"));
    m_controls.ratioBox->setVisible(isImage(element) || (element && element->is("video")));
    m_controls.linkButton->setVisible(isImage(element));
    if (isImage(element))
        m_controls.linkButton->setText(isInLink(*element) ? tr("Edit Link...") : tr("Make Link..."));
}

void AttributesPanel::setValue(const ElementAttribute& attribute, const QString& value)
{
    // An empty alt says that an image needs no text, so it stays.
    if (value.isEmpty() && attribute.kind != AttributeKind::Boolean && attribute.name != "alt") {
        remove(attribute);
        return;
    }
    if (const auto checked = checkValue(attribute.kind, value); !checked) {
        emit refused(QString::fromStdString(checked.error().text));
        return;
    }
    bool isLength = false;
    const int length = value.toInt(&isLength);
    if (isSide(attribute.name) && isLength && length > 0 && m_controls.ratioBox->isVisible() &&
        m_controls.ratioBox->isChecked()) {
        setSize(attribute.name, length);
        return;
    }
    const html::Attribute wanted = {attribute.name, value.toStdString()};
    m_edits.changeAttribute(m_row, attribute.isSet ? attribute.name : std::string(), attributeText(wanted),
                            {});
}

void AttributesPanel::remove(const ElementAttribute& attribute)
{
    if (attribute.isSet)
        m_edits.changeAttribute(m_row, attribute.name, QString(), {});
}

// The picture itself has the ratio that counts; the attributes may be wrong.
void AttributesPanel::setSize(const std::string& side, int length)
{
    const html::Element* const element = OutlineModel::elementAt(m_row);
    const auto path = element ? pathForScript(*element) : std::nullopt;
    if (!path)
        return;
    const QString script = QStringLiteral("naturalSize(%1)").arg(*path);
    m_rendering.ask(script, this, [this, side, length, row = m_row](const QVariant& answer) {
        const QVariantList size = answer.toList();
        const double width = size.value(0).toDouble();
        const double height = size.value(1).toDouble();
        std::vector<html::Attribute> sides = {{side, std::to_string(length)}};
        const double other =
            side == "width" ? length * height / width : length * width / height; // may be no number
        if (width > 0 && height > 0 && other < 100'000)
            sides.push_back(
                {side == "width" ? "height" : "width", std::to_string(std::max(1L, std::lround(other)))});
        m_edits.setAttributes(row, std::move(sides), tr("Change Size"));
    });
}

void AttributesPanel::editLink()
{
    const html::Element* const element = OutlineModel::elementAt(m_row);
    if (!element)
        return;
    m_selection.showInPage();
    (isInLink(*element) ? m_controls.editLinkAction : m_controls.makeLinkAction)->trigger();
}

// Half of the width is left to the values.
void AttributesPanel::fitNames()
{
    const QAbstractItemView& table = *m_controls.table;
    QHeaderView& header = *m_controls.table->header();
    const int needed = std::max(table.sizeHintForColumn(AttributesModel::NameColumn),
                                header.sectionSizeHint(AttributesModel::NameColumn));
    header.resizeSection(AttributesModel::NameColumn, std::min(needed, table.viewport()->width() / 2));
}

bool AttributesPanel::eventFilter(QObject* watched, QEvent* event)
{
    // Splitters don't ask a text of several lines for its height.
    if (watched == m_controls.altText) {
        if (event->type() == QEvent::Resize)
            m_controls.altText->setMinimumHeight(
                m_controls.altText->heightForWidth(m_controls.altText->width()));
        return false;
    }
    // The table itself may be on its way out with other events.
    if (event->type() == QEvent::Resize && watched == m_controls.table->viewport())
        fitNames();
    if (watched != m_controls.table || event->type() != QEvent::KeyPress)
        return false;
    QTreeView& table = *m_controls.table;
    const QModelIndex value = table.currentIndex().siblingAtColumn(AttributesModel::ValueColumn);
    const ElementAttribute* const attribute = m_model->attribute(value);
    if (!attribute)
        return false;
    switch (static_cast<const QKeyEvent*>(event)->key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        remove(ElementAttribute(*attribute));
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        if (value.flags().testFlag(Qt::ItemIsEditable))
            table.edit(value);
        else
            m_model->setData(value, attribute->isSet ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        return true;
    default:
        return false;
    }
}

} // namespace luma
