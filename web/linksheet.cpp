// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/linksheet.h"

#include "base/pathtext.h"
#include "ui_LinkSheet.h"

#include <QFile>
#include <QFileDialog>
#include <QRegularExpression>

namespace luma {

namespace {

bool runsScripts(const QString& address)
{
    // Browsers skip white space and control characters before and within a scheme (URL Standard, 4.4).
    QString scheme;
    for (const QChar c : address) {
        if (c == u':')
            break;
        if (c > QChar(0x20))
            scheme += c.toLower();
    }
    return address.contains(u':') && (scheme == QLatin1String("javascript") ||
                                      scheme == QLatin1String("vbscript") || scheme == QLatin1String("data"));
}

// Tabs and line ends, as in an address pasted from a mail, are removed (URL Standard, 4.4).
QString addressIn(const QLineEdit& field)
{
    static const QRegularExpression noPart(QStringLiteral("[\\t\\r\\n]"));
    return field.text().remove(noPart).trimmed();
}

// Blanks are encoded when it is written (URL Standard, path percent-encode set).
bool isAddress(QString address)
{
    return QUrl(address.replace(u' ', QStringLiteral("%20")), QUrl::StrictMode).isValid();
}

bool isOnlyAScheme(const QString& address)
{
    return address == QLatin1String("http://") || address == QLatin1String("https://");
}

} // namespace

LinkSheet::LinkSheet(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::LinkSheet>())
{
    m_ui->setupUi(this);
    m_ui->linkButton->setProperty("tag", 1);
    m_ui->linkCancelButton->setProperty("tag", 0);
    connect(m_ui->linkAddress, &QLineEdit::textChanged, this, &LinkSheet::checkAddress);
    connect(m_ui->linkButton, &QPushButton::clicked, this, [this] { closeSheet(m_ui->linkButton); });
    connect(m_ui->linkCancelButton, &QPushButton::clicked, this,
            [this] { closeSheet(m_ui->linkCancelButton); });
    connect(m_ui->linkChooseButton, &QPushButton::clicked, this, &LinkSheet::chooseFile);
}

LinkSheet::~LinkSheet() = default;

void LinkSheet::begin(Purpose purpose, const QString& address, const SiteFolder& site)
{
    m_purpose = purpose;
    m_site = site;
    const bool isImage = purpose == Purpose::Image;
    setWindowTitle(isImage ? tr("Insert image") : tr("Link"));
    // The button's title names the action.
    m_ui->linkButton->setText(isImage ? tr("IMG") : purpose == Purpose::Link ? tr("Link") : tr("Edit Link"));
    m_ui->linkChooseButton->setVisible(isImage);
    m_ui->linkAddress->setText(address);
    m_ui->linkAddress->selectAll();
    checkAddress();
    open();
    m_ui->linkAddress->setFocus();
}

std::optional<std::filesystem::path> LinkSheet::imageFile(const QString& address)
{
    if (const QUrl url(address, QUrl::StrictMode); url.isLocalFile())
        return fileOf(url);
    std::error_code error;
    std::filesystem::path path = pathOf(address);
    return path.is_absolute() && std::filesystem::is_regular_file(path, error) ? std::optional(path)
                                                                               : std::nullopt;
}

std::optional<std::filesystem::path> LinkSheet::fileNamed(const QString& address, const SiteFolder& site)
{
    const std::filesystem::path typed = pathOf(address);
    std::filesystem::path file =
        (typed.is_absolute() ? site.folder() : site.page().parent_path()) / typed.relative_path();
    const auto linked = site.fileOfLink(address.toStdString());
    std::error_code error;
    if (address.isEmpty() || (linked && std::filesystem::exists(*linked, error)) ||
        !std::filesystem::is_regular_file(file, error))
        return std::nullopt;
    return file;
}

std::filesystem::path LinkSheet::fileOf(const QUrl& url)
{
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

void LinkSheet::checkAddress()
{
    const QString address = addressIn(*m_ui->linkAddress);
    QString complaint;
    if (runsScripts(address))
        complaint = tr("An address that runs a script can't be used");
    else if (m_purpose == Purpose::Image && !address.isEmpty() && !imageFile(address) &&
             !isAddress(address) && !fileNamed(address, m_site))
        complaint = tr("Not an address");
    m_ui->linkComplaint->setText(complaint.isEmpty() ? adviceOn(address) : complaint);
    m_ui->linkButton->setEnabled(complaint.isEmpty() && !address.isEmpty() && !isOnlyAScheme(address));
}

QString LinkSheet::adviceOn(const QString& address) const
{
    const auto chosen = m_purpose == Purpose::Image ? imageFile(address) : std::nullopt;
    const auto named = chosen ? chosen : fileNamed(address, m_site);
    const auto file = named ? named : m_site.fileOfLink(address.toStdString());
    if (!file || m_site.realPath(*file))
        return {};
    std::error_code error;
    return std::filesystem::exists(*file, error) ? tr("The file is outside the site")
                                                 : tr("There is no such file in the site");
}

void LinkSheet::chooseFile()
{
    auto* const panel = new QFileDialog(
        this, tr("Choose an image"), QFile::decodeName(m_site.folder().c_str()),
        tr("Images (*.png *.jpg *.jpeg *.gif *.svg *.webp *.avif *.bmp *.ico);;All files (*)"));
    panel->setObjectName(QStringLiteral("imagePanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFile);
    connect(panel, &QFileDialog::fileSelected, m_ui->linkAddress, &QLineEdit::setText);
    panel->open();
}

void LinkSheet::closeSheet(QObject* sender)
{
    const QString address = addressIn(*m_ui->linkAddress);
    done(sender->property("tag").toInt());
    if (sender->property("tag").toInt() == 1)
        emit confirmed(address);
}

} // namespace luma
