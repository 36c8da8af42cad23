// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/elementsheet.h"

#include "editor/outlineselection.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/tagtraits.h"
#include "page/tagrules.h"
#include "ui_ElementSheet.h"

#include <QKeyEvent>

namespace luma {

namespace {

constexpr int reasonRole = Qt::UserRole;
constexpr int tagRole = Qt::UserRole + 1;

} // namespace

ElementSheet::ElementSheet(const OutlineSelection& selection, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ElementSheet>()), m_selection(selection)
{
    m_ui->setupUi(this);
    m_ui->elementFilter->installEventFilter(this);
    connect(m_ui->elementPlace, &QComboBox::activated, this, &ElementSheet::fillElements);
    connect(m_ui->elementFilter, &QLineEdit::textChanged, this, &ElementSheet::filter);
    connect(m_ui->elementList, &QListWidget::currentItemChanged, this, &ElementSheet::update);
    connect(m_ui->elementList, &QListWidget::itemActivated, m_ui->elementButton, &QPushButton::click);
    connect(m_ui->elementCancelButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->elementButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(this, &QDialog::accepted, this, [this] {
        m_lastPlace = place();
        emit confirmed(m_ui->elementList->currentItem()->data(tagRole).toString(), m_lastPlace);
    });
}

ElementSheet::~ElementSheet() = default;

void ElementSheet::begin()
{
    fillPlaces();
    if (m_ui->elementPlace->count() == 0)
        return;
    m_ui->elementFilter->clear();
    fillElements();
    open();
    m_ui->elementFilter->setFocus();
}

// The place chosen last, if elements can stand there.
void ElementSheet::fillPlaces()
{
    m_ui->elementPlace->clear();
    const html::Node* const node = m_selection.node();
    if (!node)
        return;
    const html::Element* const element = node->asElement();
    const QString name = element ? u'<' + tagNameOf(*element) + u'>' : tr("the selected row");
    auto places = insertPlaces(*node);
    if (m_selection.holdsCaret())
        places.insert(places.begin(), InsertPlace::Caret);
    for (const InsertPlace each : places) {
        const QString text = each == InsertPlace::Caret    ? tr("At the caret in %1")
                             : each == InsertPlace::First  ? tr("At the beginning of %1")
                             : each == InsertPlace::Last   ? tr("At the end of %1")
                             : each == InsertPlace::Before ? tr("Before %1")
                                                           : tr("After %1");
        m_ui->elementPlace->addItem(text.arg(name), static_cast<int>(each));
    }
    const bool takesIt = !isInside(m_lastPlace) || !element || !isClosed(*element);
    const InsertPlace wanted = takesIt ? m_lastPlace : InsertPlace::After;
    int known = m_ui->elementPlace->findData(static_cast<int>(wanted));
    if (known < 0 && wanted == InsertPlace::Caret)
        known = m_ui->elementPlace->findData(static_cast<int>(InsertPlace::First));
    m_ui->elementPlace->setCurrentIndex(known >= 0 ? known : m_ui->elementPlace->count() - 1);
}

InsertPlace ElementSheet::place() const
{
    return static_cast<InsertPlace>(m_ui->elementPlace->currentData().toInt());
}

void ElementSheet::fillElements()
{
    const html::Node* const node = m_selection.node();
    if (!node)
        return;
    m_ui->elementList->clear();
    for (const ElementOffer& offer : elementOffers(*node, place())) {
        const QString title = offer.tag == commentTag ? tr("Comment") : offer.tag;
        auto* const row = new QListWidgetItem(title, m_ui->elementList);
        row->setData(tagRole, offer.tag);
        row->setData(reasonRole, offer.reason);
        row->setToolTip(offer.reason);
        row->setData(Qt::AccessibleDescriptionRole, offer.reason);
        if (!offer.reason.isEmpty())
            row->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
    }
    filter(m_ui->elementFilter->text());
}

// The first element that begins so, and can be inserted, is chosen.
void ElementSheet::filter(const QString& letters)
{
    QListWidgetItem* first = nullptr;
    for (int row = 0; row < m_ui->elementList->count(); ++row) {
        QListWidgetItem* const item = m_ui->elementList->item(row);
        const QString markup = u'<' + item->data(tagRole).toString();
        item->setHidden(!item->text().startsWith(letters, Qt::CaseInsensitive) &&
                        !markup.startsWith(letters, Qt::CaseInsensitive));
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
