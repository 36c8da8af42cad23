// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/lumaappdelegate.h"

#include "app/documentcontroller.h"
#include "app/endpointnormaliser.h"
#include "app/makerhosts.h"
#include "app/preferencesdialog.h"
#include "app/sitearchive.h"
#include "app/sitelistwindow.h"
#include "app/sitetemplate.h"
#include "app/watcherkill.h"
#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/endpoint.h"
#include "desktop/windowregistry.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QUrl>

namespace luma {

namespace {

// An unreadable list is kept under this key before an empty one takes its place.
const QString unreadableKey = QStringLiteral("sitesArrayDataUnreadable");

// A sheet on `window` that deletes itself; the texts are shown as they are, whatever marks they hold.
QMessageBox* sheet(QWidget* window, const QString& name, const QString& message, const QString& information)
{
    auto* box = new QMessageBox(window);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->setWindowTitle(window->windowTitle());
    box->setTextFormat(Qt::PlainText);
    box->setText(message);
    box->setInformativeText(information);
    for (QLabel* label : box->findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    box->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole);
    return box;
}

} // namespace

LUMAAppDelegate::LUMAAppDelegate(Preferences& preferences, Services services, QObject* parent)
    : QObject(parent), m_preferences(preferences), m_services(std::move(services))
{
    sitesArrayController.setObjectName(QStringLiteral("sitesArrayController"));
    const QVariantMap record = siteTemplate();
    m_preferences.setInitialValues({{Preferences::sitesArrayData, archiveSites({record})},
                                    {Preferences::siteTemplate, record},
                                    {Preferences::excludedFolders, QStringLiteral("folder1, folder2")}});
    window = std::make_unique<SiteListWindow>(sitesArrayController);
    connectWindow();
}

LUMAAppDelegate::~LUMAAppDelegate() = default;

void LUMAAppDelegate::connectWindow()
{
    SiteListWindow* from = window.get();
    connect(from, &SiteListWindow::openRequested, this, [this, from] { handleDoubleClick(from); });
    connect(from, &SiteListWindow::addRequested, this, [this, from] { add(from); });
    connect(from, &SiteListWindow::removeRequested, this, [this, from] { remove(from); });
    connect(from, &SiteListWindow::pathRequested, this, &LUMAAppDelegate::getPath);
    connect(from, &SiteListWindow::productPageRequested, this, [this, from] { loadURLWithSender(from); });
    connect(from, &SiteListWindow::updateRequested, this, [this, from] { checkForUpdateWithSender(from); });
    connect(from, &SiteListWindow::preferencesRequested, this, [this, from] { showPreferences(from); });
    connect(from, &SiteListWindow::aboutRequested, this, [this, from] { showAbout(from); });
    connect(from, &SiteListWindow::quitRequested, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void LUMAAppDelegate::applicationWillFinishLaunching() const
{
    endStrayWatchers(m_services.shell);
}

void LUMAAppDelegate::applicationDidFinishLaunching()
{
    loadList();
    window->restoreFrom(m_preferences);
    WindowRegistry::instance().addHome(window.get());
}

void LUMAAppDelegate::loadList()
{
    sitesArrayController.setRecords({});
    const QVariant stored = m_preferences.value(Preferences::sitesArrayData);
    if (stored.typeId() != QMetaType::QByteArray)
        return;
    const auto records = unarchiveSites(stored.toByteArray());
    if (!records) {
        m_preferences.setValue(unreadableKey, stored);
        return;
    }
    sitesArrayController.setRecords(*records);
    if (!records->isEmpty())
        window->select(0);
}

Result<void> LUMAAppDelegate::applicationWillTerminate()
{
    m_preferences.setValue(Preferences::sitesArrayData, archiveSites(sitesArrayController.records()));
    window->saveTo(m_preferences);
    auto saved = m_preferences.save();
    endStrayWatchers(m_services.shell);
    return saved;
}

void LUMAAppDelegate::handleDoubleClick(QObject* /*sender*/)
{
    const SiteList::Record record = sitesArrayController.record(window->selectedRow());
    if (!record)
        return;
    const QString server = record->destinationDict()->string(endpoint::server);
    if (QWidget* open = WindowRegistry::instance().windowTitled(server)) {
        WindowRegistry::bringToFront(open);
        return;
    }
    normaliseEndpoint(*record->sourceDict());
    normaliseEndpoint(*record->destinationDict());
    m_services.showSite(record);
}

void LUMAAppDelegate::weblog(QObject* /*sender*/)
{
    (void)DocumentController::makeUntitledDocument(QStringLiteral("WeblogDocumentType"));
}

void LUMAAppDelegate::add(QObject* /*sender*/)
{
    const QVariant record = m_preferences.value(Preferences::siteTemplate);
    if (record.typeId() != QMetaType::QVariantMap)
        return;
    window->editNameOf(sitesArrayController.add(record.toMap()));
}

void LUMAAppDelegate::remove(QObject* /*sender*/)
{
    if (sitesArrayController.rowCount() == 1)
        warnOfLastRecord();
    else if (const auto next = sitesArrayController.remove(window->selectedRow()))
        window->select(*next);
}

void LUMAAppDelegate::warnOfLastRecord()
{
    sheet(window.get(), QStringLiteral("lastRecordSheet"), QStringLiteral("Warning"),
          QStringLiteral("Last record in the list cannot be deleted."))
        ->open();
}

void LUMAAppDelegate::getPath(QObject* sender)
{
    const SiteList::Record record = sitesArrayController.record(window->selectedRow());
    if (!record)
        return;
    const bool source = !sender || sender->property("tag").toInt() == 0;
    const std::shared_ptr<ObservedDictionary> target =
        source ? record->sourceDict() : record->destinationDict();
    auto* panel = new QFileDialog(window.get(), QStringLiteral("Select the path to the site folder"),
                                  target->string(endpoint::path));
    panel->setObjectName(QStringLiteral("getPathPanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setLabelText(QFileDialog::Accept, QStringLiteral("Choose"));
    panel->setWindowModality(Qt::WindowModal);
    connect(panel, &QFileDialog::fileSelected, this,
            [target](const QString& folder) { target->setValue(endpoint::path, folder); });
    panel->open();
}

void LUMAAppDelegate::loadURLWithSender(QObject* /*sender*/) const
{
    (void)m_services.openUrl(QUrl(QStringLiteral("http://") + maker::webSite + maker::productPage));
}

void LUMAAppDelegate::checkForUpdateWithSender(QObject* /*sender*/)
{
    window->setUpdateEnabled(false);
    const QPointer<LUMAAppDelegate> here(this);
    const QString version = QCoreApplication::applicationVersion();
    start(std::make_shared<WorkItem>(), [here, version, shell = m_services.shell](const WorkItem&) {
        const auto notice = VersionCheck::run(shell, version);
        onMain(here, [&notice](LUMAAppDelegate& delegate) { delegate.showNotice(notice); });
    });
}

void LUMAAppDelegate::showNotice(const std::optional<VersionCheck::Notice>& notice)
{
    window->setUpdateEnabled(true);
    if (!notice)
        return;
    QMessageBox* box =
        sheet(window.get(), QStringLiteral("updateSheet"), notice->message, notice->information);
    if (notice->offer == VersionCheck::Offer::ProductPage) {
        box->addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
        connect(box, &QMessageBox::accepted, this, [this] { loadURLWithSender(window.get()); });
    }
    box->open();
}

void LUMAAppDelegate::showPreferences(QObject* /*sender*/)
{
    (new PreferencesDialog(m_preferences, window.get()))->open();
}

void LUMAAppDelegate::showAbout(QObject* /*sender*/)
{
    sheet(window.get(), QStringLiteral("aboutSheet"),
          tr("LUMA %1").arg(QCoreApplication::applicationVersion()),
          tr("Keeps web sites as folders of pages, publishes what has changed, and keeps their links right."))
        ->open();
}

} // namespace luma
