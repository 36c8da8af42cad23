// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/configpanel.h"

#include "browser/endpoint.h"
#include "browser/transformers.h"
#include "desktop/icons.h"

#include "ui_ConfigPanel.h"

#include <QFileDialog>

namespace luma {

ConfigPanel::ConfigPanel(std::shared_ptr<ObservedDictionary> endpoint, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ConfigPanel>()), m_endpoint(std::move(endpoint))
{
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    bindProtocol();
    bindText(*m_ui->server, endpoint::server);
    bindText(*m_ui->volume, endpoint::volume);
    bindText(*m_ui->path, endpoint::path);
    bindText(*m_ui->user, endpoint::user);
    bindText(*m_ui->password, endpoint::password);
    bindAutoconnect();
    connectButtons();
    updateFields();
}

ConfigPanel::~ConfigPanel() = default;

void ConfigPanel::bindText(QLineEdit& field, const QString& key)
{
    field.setText(m_endpoint->string(key));
    connect(&field, &QLineEdit::textChanged, this, [this, key](const QString& text) {
        // Merely showing a record must not add values to it.
        if (text != m_endpoint->string(key))
            m_endpoint->setValue(key, text);
    });
    connect(m_endpoint.get(), &ObservedDictionary::changed, &field,
            [this, &field, key](const QString& changed) {
                if (changed == key && field.text() != m_endpoint->string(key))
                    field.setText(m_endpoint->string(key));
            });
}

void ConfigPanel::bindProtocol()
{
    for (const endpoint::Protocol& offered : endpoint::protocols)
        m_ui->theProtocol->addItem(offered.scheme);
    showProtocol(m_endpoint->string(endpoint::protocol));
    connect(m_ui->theProtocol, &QComboBox::textActivated, this,
            [this](const QString& chosen) { m_endpoint->setValue(endpoint::protocol, chosen); });
    connect(m_endpoint.get(), &ObservedDictionary::changed, this, [this](const QString& changed) {
        if (changed == endpoint::protocol)
            showProtocol(m_endpoint->string(endpoint::protocol));
    });
}

void ConfigPanel::bindAutoconnect()
{
    const auto show = [this] {
        m_ui->autoconnect->setChecked(m_endpoint->integer(endpoint::autoconnect) == 1);
    };
    show();
    connect(m_ui->autoconnect, &QCheckBox::clicked, this,
            [this](bool on) { m_endpoint->setValue(endpoint::autoconnect, on ? 1 : 0); });
    connect(m_endpoint.get(), &ObservedDictionary::changed, this, [show](const QString& changed) {
        if (changed == endpoint::autoconnect)
            show();
    });
}

void ConfigPanel::connectButtons()
{
    m_ui->showPasswordButton->setIcon(icons::symbol(QStringLiteral("show-password")));
    connect(m_ui->showPasswordButton, &QAbstractButton::toggled, this, &ConfigPanel::togglePassword);
    connect(m_ui->chooseFolderButton, &QAbstractButton::clicked, this, &ConfigPanel::chooseFolder);
    connect(m_ui->configConnectButton, &QAbstractButton::clicked, this, &ConfigPanel::connectRequested);
    connect(m_ui->closeSheetButton, &QAbstractButton::clicked, this, &ConfigPanel::closeRequested);
    connect(this, &QDialog::finished, this, [this] { m_ui->showPasswordButton->setChecked(false); });
}

void ConfigPanel::showProtocol(const QString& protocol)
{
    // A record may name a protocol that is not offered here; it must not be lost.
    if (!protocol.isEmpty() && m_ui->theProtocol->findText(protocol) < 0)
        m_ui->theProtocol->addItem(protocol);
    m_ui->theProtocol->setCurrentIndex(m_ui->theProtocol->findText(protocol));
    updateFields();
}

void ConfigPanel::updateFields()
{
    const QVariant chosen = protocol();
    const bool onServer = Transformers::named(u"FilePathTransformer")(chosen) == QLatin1String("1");
    for (QWidget* field : std::initializer_list<QWidget*>{m_ui->server, m_ui->volume, m_ui->user,
                                                          m_ui->password, m_ui->showPasswordButton})
        field->setEnabled(onServer);
    m_ui->chooseFolderButton->setEnabled(!onServer);
    const bool isShare = Transformers::named(u"SMBPathTransformer")(chosen) == QLatin1String("0");
    m_ui->volumeLabel->setText(isShare ? tr("S&hare:") : tr("&Volume:"));
}

ConnectionRequest ConfigPanel::request() const
{
    return {.protocol = protocol(),
            .server = m_ui->server->text(),
            .volume = m_ui->volume->text(),
            .path = m_ui->path->text(),
            .user = m_ui->user->text(),
            .password = m_ui->password->text(),
            .sshPort = m_endpoint->string(endpoint::sshPortNo)};
}

QString ConfigPanel::protocol() const
{
    return m_ui->theProtocol->currentText();
}

bool ConfigPanel::connectsOnOpening() const
{
    return m_ui->autoconnect->isChecked();
}

void ConfigPanel::clearErrorMessage()
{
    m_ui->errorMessage->clear();
}

void ConfigPanel::togglePassword(bool visible)
{
    m_ui->password->setEchoMode(visible ? QLineEdit::Normal : QLineEdit::Password);
}

void ConfigPanel::chooseFolder()
{
    auto* chooser = new QFileDialog(this, tr("Choose the site's folder"), m_ui->path->text());
    chooser->setObjectName(QStringLiteral("folderChooser"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    connect(chooser, &QFileDialog::fileSelected, m_ui->path, &QLineEdit::setText);
    chooser->open();
}

} // namespace luma
