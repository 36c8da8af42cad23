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
    sourceDict = addEndpoint(SiteSide::Source, QStringLiteral("sourceDict"), tr("Source: the working copy"));
    destinationDict = addEndpoint(SiteSide::Destination, QStringLiteral("destinationDict"),
                                  tr("Destination: the web server"));
    connect(m_ui->siteID, &QLineEdit::textEdited, this,
            [this](const QString& name) { m_record->setSiteID(name); });
    connect(m_ui->webAddress, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_record->setWebAddressText(text); });
    const int lines = m_ui->ignoredNames->fontMetrics().lineSpacing() * 3;
    m_ui->ignoredNames->setFixedHeight(lines + 4 * m_ui->ignoredNames->frameWidth() + 8);
    connect(m_ui->ignoredNames, &QPlainTextEdit::textChanged, this, &SiteForm::takeIgnoredNames);
    connect(m_ui->keptDays, &QSpinBox::valueChanged, this, &SiteForm::takeKeepChoice);
    connect(m_ui->keptFolder, &QLineEdit::textEdited, this, &SiteForm::takeKeepChoice);
    connect(m_ui->openButton, &QPushButton::clicked, this, &SiteForm::openRequested);
    setRecord(nullptr);
}

SiteForm::~SiteForm() = default;

EndpointForm* SiteForm::addEndpoint(SiteSide side, const QString& name, const QString& title)
{
    auto* form = new EndpointForm(side, this);
    form->setObjectName(name);
    form->setTitle(title);
    m_ui->endpointLayout->addWidget(form, 1);
    connect(form, &EndpointForm::folderRequested, this, [this, side] { emit folderRequested(side); });
    return form;
}

void SiteForm::setRecord(const std::shared_ptr<SiteRecord>& record)
{
    if (m_record)
        disconnect(m_record.get(), nullptr, this, nullptr);
    m_record = record;
    sourceDict->setEndpoint(record ? record->sourceDict() : nullptr);
    destinationDict->setEndpoint(record ? record->destinationDict() : nullptr);
    setEnabled(record != nullptr);
    if (record)
        connect(record.get(), &SiteRecord::changed, this, &SiteForm::showTexts);
    showTexts();
}

void SiteForm::showTexts()
{
    // Setting the same text would move the cursor while the user is typing.
    const auto show = [](QLineEdit& field, const QString& text) {
        if (field.text() != text)
            field.setText(text);
    };
    show(*m_ui->siteID, m_record ? m_record->siteID() : QString());
    show(*m_ui->webAddress, m_record ? m_record->webAddressText() : QString());
    const QString patterns = m_record ? m_record->ignoredNames() : QString();
    if (m_ui->ignoredNames->toPlainText() != patterns) {
        const QSignalBlocker blocker(m_ui->ignoredNames);
        m_ui->ignoredNames->setPlainText(patterns);
    }
    const KeepChoice choice = m_record ? m_record->keepChoice() : KeepChoice();
    const QString folder = QString::fromStdString(choice.folder);
    if (m_ui->keptFolder->text().trimmed() != folder)
        m_ui->keptFolder->setText(folder);
    // Last, because it takes both values.
    m_ui->keptDays->setValue(choice.days);
    m_ui->keptFolder->setEnabled(choice.days > 0);
}

void SiteForm::takeIgnoredNames()
{
    if (m_record && m_record->ignoredNames() != m_ui->ignoredNames->toPlainText())
        m_record->setIgnoredNames(m_ui->ignoredNames->toPlainText());
}

void SiteForm::takeKeepChoice()
{
    m_ui->keptFolder->setEnabled(m_ui->keptDays->value() > 0);
    const KeepChoice choice = {.days = m_ui->keptDays->value(),
                               .folder = m_ui->keptFolder->text().trimmed().toStdString()};
    if (m_record && m_record->keepChoice() != choice)
        m_record->setKeepChoice(choice);
}

void SiteForm::editName()
{
    m_ui->siteID->setFocus();
    m_ui->siteID->selectAll();
}

void SiteForm::resizeEvent(QResizeEvent* event)
{
    const int sideBySide = sourceDict->sizeHint().width() + destinationDict->sizeHint().width() +
                           m_ui->endpointLayout->spacing();
    m_ui->endpointLayout->setDirection(event->size().width() < sideBySide ? QBoxLayout::TopToBottom
                                                                          : QBoxLayout::LeftToRight);
    QWidget::resizeEvent(event);
}

} // namespace luma
