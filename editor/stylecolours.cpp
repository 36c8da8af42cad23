// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylecolours.h"

#include "editor/stylepreview.h"
#include "editor/stylerulesmodel.h"
#include "web/csscolours.h"
#include "web/viewcontroller.h"

#include <QApplication>
#include <QColorDialog>
#include <QFontMetrics>
#include <QMenu>
#include <QPainter>
#include <QTreeView>

#include <utility>

namespace luma {

StyleColours::StyleColours(QTreeView& view, const StyleRulesModel& model, ViewController& rendering,
                           QObject* parent)
    : QObject(parent), m_view(view), m_model(model), m_rendering(rendering)
{}

bool StyleColours::isOpen() const
{
    return m_dialog && m_dialog->isVisible();
}

QIcon StyleColours::swatch(const QColor& colour)
{
    const int size = QFontMetrics(QApplication::font()).ascent();
    const qreal ratio = qApp->devicePixelRatio();
    QPixmap picture(QSize(size, size) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    if (colour.alpha() < 255)
        painter.fillRect(QRect(0, 0, size, size), QBrush(Qt::lightGray, Qt::Dense4Pattern));
    painter.setPen(Qt::gray);
    painter.setBrush(colour);
    painter.drawRect(0, 0, size - 1, size - 1);
    QIcon icon(picture);
    icon.addPixmap(picture, QIcon::Selected); // not tinted
    return icon;
}

void StyleColours::pick(const QModelIndex& index)
{
    std::vector<StyleColour> colours = m_model.coloursOf(index);
    std::erase_if(colours, [](const StyleColour& colour) { return !colour.value.isValid(); });
    if (colours.size() == 1)
        open(colours.front(), colours.front().value.data().toString());
    if (colours.size() < 2)
        return;
    auto* const menu = new QMenu(&m_view);
    menu->setObjectName(QStringLiteral("coloursMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const StyleColour& colour : colours)
        menu->addAction(swatch(colour.colour), colour.text, this,
                        [this, colour, row = QPersistentModelIndex(colour.value),
                         value = colour.value.data().toString()] {
                            StyleColour chosen = colour;
                            chosen.value = row;
                            open(chosen, value);
                        });
    menu->popup(m_view.viewport()->mapToGlobal(m_view.visualRect(index).bottomLeft()));
}

void StyleColours::open(const StyleColour& colour, const QString& text)
{
    m_index = colour.value;
    m_value = text;
    if (!m_index.isValid() || m_index.data().toString() != m_value)
        return;
    m_at = colour.at;
    m_length = colour.length;
    delete m_dialog;
    m_dialog = new QColorDialog(colour.colour, m_view.window());
    m_dialog->setObjectName(QStringLiteral("colourDialog"));
    m_dialog->setWindowTitle(m_index.sibling(m_index.row(), StyleRulesModel::NameColumn).data().toString());
    m_dialog->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::DontUseNativeDialog);
    connect(m_dialog, &QColorDialog::currentColorChanged, this, &StyleColours::preview);
    connect(m_dialog, &QColorDialog::finished, this, [this](int result) {
        endStylePreview(m_rendering);
        const QString value = valueWith(m_dialog->currentColor());
        if (result == QDialog::Accepted && m_index.isValid() && value != m_value)
            emit valueChosen(m_index, value);
        m_dialog->deleteLater();
    });
    m_dialog->open();
}

QString StyleColours::valueWith(const QColor& colour) const
{
    return QString(m_value).replace(m_at, m_length, cssColourText(colour, m_value.mid(m_at, m_length)));
}

void StyleColours::preview(const QColor& colour)
{
    const StyleRule* const rule = m_model.ruleOf(m_index);
    if (!rule)
        return;
    previewStyle(m_rendering, *rule, m_index.sibling(m_index.row(), 0).data().toString(), valueWith(colour));
}

} // namespace luma
