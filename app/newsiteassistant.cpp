// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/newsiteassistant.h"

#include "base/mainhop.h"
#include "browser/endpoint.h"
#include "ui_NewSiteAssistant.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPushButton>

namespace luma {

namespace {

const QString sourceKey = QStringLiteral("sourceDict");
const QString destinationKey = QStringLiteral("destinationDict");
const QString nameKey = QStringLiteral("siteID");

// Without the blanks at both ends and the slash at its end.
QString folderIn(const QLineEdit& field)
{
    const QString text = field.text().trimmed();
    return text.size() > 1 && text.endsWith(u'/') ? text.chopped(1) : text;
}

} // namespace

NewSiteAssistant::NewSiteAssistant(QVariantMap record, MounterSource mounter, QWidget* parent)
    : QWizard(parent),
      m_record(std::move(record)),
      m_mounter(std::move(mounter)),
      m_ui(std::make_unique<Ui::NewSiteAssistant>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setButtonText(QWizard::CustomButton1, tr("Fill In the &Form Instead"));
    addProtocols();
    connectFields();
    connect(this, &QWizard::currentIdChanged, this, &NewSiteAssistant::updatePages);
    connect(this, &QWizard::customButtonClicked, this, [this] {
        emit skipped();
        reject();
    });
    updatePages();
}

NewSiteAssistant::~NewSiteAssistant()
{
    forgetTest();
}

void NewSiteAssistant::addProtocols()
{
    for (const endpoint::Protocol& protocol : endpoint::protocols)
        m_ui->protocol->addItem(QCoreApplication::translate("luma::endpoint", protocol.meaning),
                                QString(protocol.scheme));
    const QString usual = m_record.value(destinationKey).toMap().value(endpoint::protocol).toString();
    m_ui->protocol->setCurrentIndex(std::max(0, m_ui->protocol->findData(usual)));
}

void NewSiteAssistant::connectFields()
{
    for (QLineEdit* field : {m_ui->sourcePath, m_ui->siteName})
        connect(field, &QLineEdit::textChanged, this, &NewSiteAssistant::updatePages);
    for (QLineEdit* field : {m_ui->server, m_ui->volume, m_ui->path, m_ui->user, m_ui->password}) {
        connect(field, &QLineEdit::textChanged, this, &NewSiteAssistant::forgetTest);
        connect(field, &QLineEdit::textChanged, this, &NewSiteAssistant::updatePages);
    }
    connect(m_ui->protocol, &QComboBox::currentIndexChanged, this, &NewSiteAssistant::forgetTest);
    connect(m_ui->protocol, &QComboBox::currentIndexChanged, this, &NewSiteAssistant::updatePages);
    connect(m_ui->sourcePathButton, &QPushButton::clicked, this, [this] { chooseFolder(*m_ui->sourcePath); });
    connect(m_ui->pathButton, &QPushButton::clicked, this, [this] { chooseFolder(*m_ui->path); });
    connect(m_ui->testButton, &QPushButton::clicked, this, &NewSiteAssistant::test);
}

void NewSiteAssistant::chooseFolder(QLineEdit& field)
{
    auto* chooser = new QFileDialog(this, tr("Choose the folder"), field.text());
    chooser->setObjectName(QStringLiteral("folderChooser"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    connect(chooser, &QFileDialog::fileSelected, &field, &QLineEdit::setText);
    chooser->open();
}

QString NewSiteAssistant::pagesProblem() const
{
    const QString folder = folderIn(*m_ui->sourcePath);
    if (folder.isEmpty())
        return tr("Choose the folder that holds the site's pages.");
    return QFileInfo(folder).isDir() ? QString() : tr("%1: no such folder").arg(folder);
}

QString NewSiteAssistant::serverProblem() const
{
    if (!request().isLocal())
        return request().server.isEmpty() ? tr("Enter the server's name.") : QString();
    if (request().path.isEmpty())
        return tr("Choose the folder to publish to.");
    return QDir(request().path) == QDir(folderIn(*m_ui->sourcePath))
               ? tr("This is the folder of the pages. Choose another one.")
               : QString();
}

void NewSiteAssistant::updatePages()
{
    const bool isLocal = request().isLocal();
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_ui->server, m_ui->serverLabel, m_ui->user, m_ui->userLabel,
                                         m_ui->password, m_ui->passwordLabel})
        widget->setEnabled(!isLocal);
    m_ui->volume->setEnabled(hasShares());
    m_ui->volumeLabel->setEnabled(hasShares());
    m_ui->pathButton->setEnabled(isLocal);
    m_ui->siteName->setPlaceholderText(QFileInfo(folderIn(*m_ui->sourcePath)).fileName());
    m_ui->pagesHint->setText(pagesProblem());
    m_ui->testButton->setEnabled(serverProblem().isEmpty() && !m_test);
    if (!serverProblem().isEmpty())
        m_ui->testResult->setText(serverProblem());
    showSummary();
    button(QWizard::CustomButton1)->setVisible(currentPage() != m_ui->donePage);
    auto* const next = qobject_cast<QPushButton*>(button(QWizard::NextButton));
    next->setEnabled(validateCurrentPage());
    if (next->isVisible())
        next->setDefault(true);
}

bool NewSiteAssistant::validateCurrentPage()
{
    if (currentPage() == m_ui->pagesPage)
        return pagesProblem().isEmpty();
    return currentPage() != m_ui->serverPage || serverProblem().isEmpty();
}

// Other servers show one tree of folders.
bool NewSiteAssistant::hasShares() const
{
    const QString protocol = m_ui->protocol->currentData().toString();
    return protocol == QLatin1String("smb://") || protocol == QLatin1String("afp://");
}

ConnectionRequest NewSiteAssistant::request() const
{
    return {.protocol = m_ui->protocol->currentData().toString(),
            .server = m_ui->server->text().trimmed(),
            .volume = hasShares() ? m_ui->volume->text().trimmed() : QString(),
            .path = folderIn(*m_ui->path),
            .user = m_ui->user->text().trimmed(),
            .password = m_ui->password->text()};
}

void NewSiteAssistant::test()
{
    m_test = std::make_shared<WorkItem>();
    m_ui->testResult->setText(tr("Connecting…"));
    updatePages();
    start(m_test, [here = QPointer(this), request = request(), mounter = m_mounter()](const WorkItem& item) {
        const QString problem = connectionProblem(request, *mounter, [&item] { return !item.isCancelled(); });
        onMain(here, [&](NewSiteAssistant& alive) {
            if (!item.isCancelled())
                alive.showTest(problem);
        });
    });
}

void NewSiteAssistant::showTest(const QString& problem)
{
    m_test.reset();
    m_ui->testResult->setText(problem.isEmpty() ? tr("The connection works.") : problem);
    updatePages();
}

void NewSiteAssistant::forgetTest()
{
    if (m_test)
        m_test->cancel();
    m_test.reset();
    m_ui->testResult->clear();
}

void NewSiteAssistant::showSummary()
{
    const QVariantMap site = record();
    const ConnectionRequest to = request();
    const QString folder = to.volume + (to.path.isEmpty() ? QStringLiteral("/") : to.path);
    const QString place = to.isLocal() ? to.path : tr("%1 on %2").arg(folder, to.server);
    m_ui->summary->setText(tr("“%1” is edited in %2 and published to %3.")
                               .arg(site.value(nameKey).toString(), folderIn(*m_ui->sourcePath), place));
}

QVariantMap NewSiteAssistant::record() const
{
    QVariantMap record = m_record;
    const QString name = m_ui->siteName->text().trimmed();
    record[nameKey] = name.isEmpty() ? m_ui->siteName->placeholderText() : name;
    QVariantMap source = record.value(sourceKey).toMap();
    source[endpoint::path] = folderIn(*m_ui->sourcePath);
    record[sourceKey] = source;
    const ConnectionRequest to = request();
    QVariantMap destination = record.value(destinationKey).toMap();
    destination[endpoint::protocol] = to.protocol;
    destination[endpoint::path] = to.path;
    if (!to.isLocal()) {
        destination[endpoint::server] = to.server;
        destination[endpoint::volume] = to.volume;
        destination[endpoint::user] = to.user;
        destination[endpoint::password] = to.password;
    }
    record[destinationKey] = destination;
    return record;
}

bool NewSiteAssistant::opensSite() const
{
    return m_ui->opensSite->isChecked();
}

} // namespace luma
