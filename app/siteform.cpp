// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/siteform.h"

#include "desktop/icons.h"
#include "ui_SiteForm.h"

#include <QResizeEvent>

namespace luma {

SiteForm::SiteForm(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::SiteForm>())
{
    m_ui->setupUi(this);
    m_ui->openButton->setIcon(icons::symbol(QStringLiteral("open")));
    QFont prominent = m_ui->openButton->font();
    prominent.setBold(true);
    m_ui->openButton->setFont(prominent);
    m_ui->openButton->setMinimumWidth(m_ui->openButton->sizeHint().width() * 5 / 4);
    m_ui->sourceDict->setTag(0);
    m_ui->destinationDict->setTag(1);
    connect(m_ui->siteID, &QLineEdit::textEdited, this,
            [this](const QString& name) { m_record->setSiteID(name); });
    connect(m_ui->openButton, &QPushButton::clicked, this, &SiteForm::openRequested);
    connect(m_ui->sourceDict, &EndpointForm::pathRequested, this, &SiteForm::pathRequested);
    connect(m_ui->destinationDict, &EndpointForm::pathRequested, this, &SiteForm::pathRequested);
    setRecord(nullptr);
}

SiteForm::~SiteForm() = default;

void SiteForm::setRecord(const std::shared_ptr<SiteRecord>& record)
{
    if (m_record)
        disconnect(m_record.get(), nullptr, this, nullptr);
    m_record = record;
    m_ui->sourceDict->setEndpoint(record ? record->sourceDict() : nullptr);
    m_ui->destinationDict->setEndpoint(record ? record->destinationDict() : nullptr);
    setEnabled(record != nullptr);
    if (record)
        connect(record.get(), &SiteRecord::changed, this, &SiteForm::showName);
    showName();
}

void SiteForm::showName()
{
    const QString name = m_record ? m_record->siteID() : QString();
    if (m_ui->siteID->text() != name)
        m_ui->siteID->setText(name);
}

void SiteForm::editName()
{
    m_ui->siteID->setFocus();
    m_ui->siteID->selectAll();
}

void SiteForm::resizeEvent(QResizeEvent* event)
{
    const int sideBySide = m_ui->sourceDict->sizeHint().width() + m_ui->destinationDict->sizeHint().width() +
                           m_ui->endpointLayout->spacing();
    m_ui->endpointLayout->setDirection(event->size().width() < sideBySide ? QBoxLayout::TopToBottom
                                                                          : QBoxLayout::LeftToRight);
    QWidget::resizeEvent(event);
}

} // namespace luma
