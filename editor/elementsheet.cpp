// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/elementsheet.h"

#include "editor/outlineselection.h"
#include "html/element.h"
#include "page/elementplaces.h"
#include "page/tagrules.h"
#include "ui_ElementSheet.h"

#include <QKeyEvent>

namespace luma {

namespace {

constexpr int reasonRole = Qt::UserRole;

} // namespace

ElementSheet::ElementSheet(const OutlineSelection& selection, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ElementSheet>()), m_selection(selection)
{
    m_ui->setupUi(this);
    m_ui->elementFilter->installEventFilter(this);
    connect(m_ui->elementFilter, &QLineEdit::textChanged, this, &ElementSheet::filter);
    connect(m_ui->elementList, &QListWidget::currentItemChanged, this, &ElementSheet::update);
    connect(m_ui->elementList, &QListWidget::itemActivated, m_ui->elementButton, &QPushButton::click);
    connect(m_ui->elementCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->elementButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this,
            [this] { emit confirmed(m_ui->elementList->currentItem()->text()); });
}

ElementSheet::~ElementSheet() = default;

void ElementSheet::begin()
{
    const html::Element* const parent = m_selection.element();
    if (!parent)
        return;
    m_ui->elementLabel->setText(tr("In <%1>:").arg(tagNameOf(*parent)));
    m_ui->elementList->clear();
    for (const ElementOffer& offer : elementOffers(*parent)) {
        auto* const row = new QListWidgetItem(offer.tag, m_ui->elementList);
        row->setData(reasonRole, offer.reason);
        row->setToolTip(offer.reason);
        row->setData(Qt::AccessibleDescriptionRole, offer.reason);
        if (!offer.reason.isEmpty())
            row->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
    }
    m_ui->elementFilter->clear();
    filter({});
    open();
    m_ui->elementFilter->setFocus();
}

// The first element that begins so, and can be inserted, is chosen.
void ElementSheet::filter(const QString& letters)
{
    QListWidgetItem* first = nullptr;
    for (int row = 0; row < m_ui->elementList->count(); ++row) {
        QListWidgetItem* const item = m_ui->elementList->item(row);
        item->setHidden(!item->text().startsWith(letters, Qt::CaseInsensitive));
        const bool isBetter = !first || (!first->data(reasonRole).toString().isEmpty() &&
                                         item->data(reasonRole).toString().isEmpty());
        if (!item->isHidden() && isBetter)
            first = item;
    }
    m_ui->elementList->setCurrentItem(first);
    update();
}

void ElementSheet::update()
{
    const QListWidgetItem* const item = m_ui->elementList->currentItem();
    const QString reason = item ? item->data(reasonRole).toString() : tr("HTML has no such element.");
    m_ui->elementReason->setText(reason);
    m_ui->elementButton->setEnabled(item && reason.isEmpty());
}

// The arrow keys go through the list while the letters go to the field.
bool ElementSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown)
            return QCoreApplication::sendEvent(m_ui->elementList, event);
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace luma
