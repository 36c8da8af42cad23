// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/endpointform.h"

#include "browser/endpoint.h"
#include "desktop/icons.h"
#include "ui_EndpointForm.h"

#include <QCoreApplication>

namespace luma {

EndpointForm::EndpointForm(SiteSide side, QWidget* parent)
    : QGroupBox(parent), m_ui(std::make_unique<Ui::EndpointForm>()), m_side(side)
{
    m_ui->setupUi(this);
    m_fields = {{endpoint::server, m_ui->server},     {endpoint::volume, m_ui->volume},
                {endpoint::path, m_ui->path},         {endpoint::user, m_ui->user},
                {endpoint::password, m_ui->password}, {endpoint::sshPortNo, m_ui->sshPortNo}};
    m_ui->pathButton->setIcon(icons::folder());
    m_ui->showPassword->setIcon(icons::symbol(QStringLiteral("show-password")));
    fillProtocols();
    nameControls();
    connectFields();
    setEndpoint(nullptr);
}

EndpointForm::~EndpointForm() = default;

void EndpointForm::fillProtocols()
{
    for (const endpoint::Protocol& protocol : endpoint::protocols) {
        const QString scheme = protocol.scheme;
        const QString meaning = QCoreApplication::translate("luma::endpoint", protocol.meaning);
        m_ui->protocol->addItem(tr("%1 (%2)").arg(meaning, scheme), scheme);
    }
    m_ui->protocol->setPlaceholderText(tr("Choose…"));
}

/// The other side's form has the same labels.
void EndpointForm::nameControls()
{
    const QString named = m_side == SiteSide::Source ? tr("Source: %1") : tr("Destination: %1");
    for (const QLabel* label : findChildren<QLabel*>()) {
        if (label->buddy())
            label->buddy()->setAccessibleName(named.arg(label->text().remove(u'&')));
    }
    m_ui->pathButton->setAccessibleName(named.arg(tr("Choose folder")));
    m_ui->showPassword->setAccessibleName(named.arg(tr("Show password")));
    m_ui->autoconnect->setAccessibleName(named.arg(m_ui->autoconnect->text()));
}

void EndpointForm::connectFields()
{
    for (auto field = m_fields.cbegin(); field != m_fields.cend(); ++field) {
        connect(field.value(), &QLineEdit::textEdited, this,
                [this, key = field.key()](const QString& text) { m_endpoint->setValue(key, text); });
    }
    connect(m_ui->protocol, &QComboBox::activated, this, [this](int row) {
        m_endpoint->setValue(endpoint::protocol, m_ui->protocol->itemData(row).toString());
    });
    connect(m_ui->autoconnect, &QCheckBox::clicked, this,
            [this](bool on) { m_endpoint->setValue(endpoint::autoconnect, qlonglong{on ? 1 : 0}); });
    connect(m_ui->showPassword, &QPushButton::toggled, this, [this](bool clear) {
        m_ui->password->setEchoMode(clear ? QLineEdit::Normal : QLineEdit::Password);
    });
    connect(m_ui->pathButton, &QPushButton::clicked, this, &EndpointForm::folderRequested);
}

void EndpointForm::setEndpoint(const std::shared_ptr<ObservedDictionary>& endpoint)
{
    if (m_endpoint)
        disconnect(m_endpoint.get(), nullptr, this, nullptr);
    m_endpoint = endpoint;
    // Showing one site's password must not reveal the next one's.
    m_ui->showPassword->setChecked(false);
    if (m_endpoint)
        connect(m_endpoint.get(), &ObservedDictionary::changed, this, &EndpointForm::show);
    showAll();
}

QString EndpointForm::shownText(const QString& key) const
{
    if (!m_endpoint)
        return {};
    const QVariant value = m_endpoint->value(key);
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::Int:
    case QMetaType::LongLong:
        return value.toString();
    default:
        return {};
    }
}

void EndpointForm::showAll()
{
    for (auto field = m_fields.cbegin(); field != m_fields.cend(); ++field)
        show(field.key());
    show(endpoint::autoconnect);
    show(endpoint::protocol);
}

void EndpointForm::show(const QString& key)
{
    if (key == endpoint::protocol) {
        showProtocol();
        updateEnabled();
    } else if (key == endpoint::autoconnect) {
        m_ui->autoconnect->setChecked(m_endpoint && m_endpoint->integer(key) == 1);
    } else if (QLineEdit* field = m_fields.value(key)) {
        const QString text = shownText(key);
        // Setting the same text would move the cursor while the user is typing.
        if (field->text() != text) {
            field->setText(text);
            field->setCursorPosition(0);
        }
    }
}

void EndpointForm::showProtocol()
{
    const QString scheme = shownText(endpoint::protocol);
    while (m_ui->protocol->count() > static_cast<int>(endpoint::protocols.size()))
        m_ui->protocol->removeItem(m_ui->protocol->count() - 1);
    int row = m_ui->protocol->findData(scheme);
    if (row < 0 && !scheme.isEmpty()) {
        m_ui->protocol->addItem(scheme, scheme);
        row = m_ui->protocol->count() - 1;
    }
    m_ui->protocol->setCurrentIndex(row);
}

void EndpointForm::updateEnabled()
{
    const bool remote = shownText(endpoint::protocol) != endpoint::fileProtocol;
    setEnabled(m_endpoint != nullptr);
    // The destination's server names the site's window, whatever the protocol.
    const bool server = remote || m_side == SiteSide::Destination;
    m_ui->server->setEnabled(server);
    m_ui->serverLabel->setEnabled(server);
    for (QWidget* widget : std::initializer_list<QWidget*>{
             m_ui->volume, m_ui->volumeLabel, m_ui->user, m_ui->userLabel, m_ui->password,
             m_ui->passwordLabel, m_ui->showPassword, m_ui->sshPortNo, m_ui->sshPortNoLabel})
        widget->setEnabled(remote);
}

} // namespace luma
