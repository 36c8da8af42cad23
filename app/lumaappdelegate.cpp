// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/lumaappdelegate.h"

#include "app/makerhosts.h"
#include "app/preferencesdialog.h"
#include "app/sitelistwindow.h"
#include "app/sitetemplate.h"
#include "base/files.h"
#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/endpoint.h"
#include "desktop/windowregistry.h"
#include "site/sitearchive.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QUrl>

namespace luma {

namespace {

constexpr qsizetype mostNames = 12; // of the sites that an import would add

// A sheet on `window` that deletes itself when closed. The texts are plain, never markup.
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

Result<QList<QVariantMap>> sitesIn(const QString& file)
{
    const auto bytes = readFile(QFile::encodeName(file).toStdString());
    if (!bytes)
        return bytes.error();
    auto records = unarchiveSites(QByteArray::fromStdString(*bytes));
    if (!records)
        return Error{LUMAAppDelegate::tr("%1: not a list of sites").arg(file).toStdString()};
    if (records->isEmpty())
        return Error{LUMAAppDelegate::tr("%1: there are no sites in this list").arg(file).toStdString()};
    return records;
}

QString waitingForPassword()
{
    return LUMAAppDelegate::tr("Waiting for the password. The desktop may ask you to unlock its keyring.");
}

QString trimmed(QStringView text)
{
    const auto isBlank = [](QChar character) { return character == u' ' || character == u'\t'; };
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text.toString();
}

// Tidies an endpoint before its site opens: strings lose the blanks and tabs at both ends, and the path then
// loses one slash at its end. Values of other types stay unchanged.
void normalise(ObservedDictionary& endpoint)
{
    const QVariantMap values = endpoint.values();
    for (auto entry = values.begin(); entry != values.end(); ++entry) {
        if (entry->typeId() != QMetaType::QString)
            continue;
        QString text = trimmed(entry->toString());
        if (entry.key() == endpoint::path && text.endsWith(u'/'))
            text.chop(1);
        endpoint.setValue(entry.key(), text);
    }
}

} // namespace

LUMAAppDelegate::LUMAAppDelegate(Preferences& preferences, Services services, QObject* parent)
    : QObject(parent),
      m_preferences(preferences),
      m_services(std::move(services)),
      m_passwords(sitesArrayController, m_services.secrets),
      m_store(sitesArrayController, m_passwords, m_preferences),
      window(std::make_unique<SiteListWindow>(sitesArrayController))
{
    sitesArrayController.setObjectName(QStringLiteral("sitesArrayController"));
    connectWindow();
    connect(&m_store, &SiteListStore::written, window.get(), &SiteListWindow::showSaveError);
}

LUMAAppDelegate::~LUMAAppDelegate() = default;

QVariantMap LUMAAppDelegate::initialValues()
{
    return {{Preferences::sitesArrayData, archiveSites({})},
            {Preferences::siteTemplate, siteTemplate()},
            {Preferences::excludedFolders, QStringLiteral("folder1, folder2")},
            {Preferences::fragmentsAreChecked, true},
            {Preferences::asksBeforeManyPages, true},
            {Preferences::mostPagesUnasked, 10}};
}

void LUMAAppDelegate::endStrayWatchers(const CommandRunner& shell)
{
    (void)shell({"-c", "ps aux | grep -v grep | grep LUMAWatcher | awk '{print $2}' | xargs kill"});
}

void LUMAAppDelegate::connectWindow()
{
    SiteListWindow* from = window.get();
    connect(from, &SiteListWindow::openRequested, this, &LUMAAppDelegate::handleDoubleClick);
    connect(from, &SiteListWindow::addRequested, this, &LUMAAppDelegate::newSite);
    connect(from, &SiteListWindow::sampleRequested, this, &LUMAAppDelegate::openSampleSite);
    connect(from, &SiteListWindow::duplicateRequested, this, &LUMAAppDelegate::duplicate);
    connect(from, &SiteListWindow::importRequested, this, &LUMAAppDelegate::importSites);
    connect(from, &SiteListWindow::exportRequested, this, &LUMAAppDelegate::exportSites);
    connect(from, &SiteListWindow::removeRequested, this, &LUMAAppDelegate::remove);
    connect(from, &SiteListWindow::undoRequested, this, &LUMAAppDelegate::undo);
    connect(&sitesArrayController, &SiteList::rearranged, this,
            [this](const SiteList::Arrangement& before, const QString& text) {
                addUndo(text, [this, before] { sitesArrayController.arrange(before); });
            });
    connect(from, &SiteListWindow::folderRequested, this, &LUMAAppDelegate::getPath);
    connect(from, &SiteListWindow::productPageRequested, this, &LUMAAppDelegate::loadURL);
    connect(from, &SiteListWindow::updateRequested, this, &LUMAAppDelegate::checkForUpdate);
    connect(from, &SiteListWindow::preferencesRequested, this, &LUMAAppDelegate::showPreferences);
    connect(from, &SiteListWindow::quitRequested, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

void LUMAAppDelegate::applicationWillFinishLaunching() const
{
    endStrayWatchers(m_services.shell);
}

void LUMAAppDelegate::applicationDidFinishLaunching()
{
    m_store.load();
    if (sitesArrayController.rowCount() > 0)
        window->select(0);
    window->restoreFrom(m_preferences);
    WindowRegistry::instance().addHome(window.get());
}

Result<void> LUMAAppDelegate::applicationWillTerminate()
{
    window->saveTo(m_preferences);
    auto saved = m_store.save();
    m_passwords.cancel();
    endStrayWatchers(m_services.shell);
    return saved;
}

// By name: the rows may have changed since.
void LUMAAppDelegate::reopenSites()
{
    if (!m_preferences.value(Preferences::reopensSites).toBool())
        return;
    QStringList names = m_preferences.value(Preferences::sitesLeftOpen).toStringList();
    for (int row = 0; row < sitesArrayController.rowCount(); ++row) {
        const SiteList::Record record = sitesArrayController.record(row);
        if (names.removeOne(record->siteID()))
            open(record);
    }
}

void LUMAAppDelegate::noteOpenSites()
{
    QStringList names;
    for (int row = 0; row < sitesArrayController.rowCount(); ++row) {
        const SiteList::Record record = sitesArrayController.record(row);
        if (WindowRegistry::instance().windowShowing(record.get()))
            names.append(record->siteID());
    }
    m_preferences.setValue(Preferences::sitesLeftOpen, names);
}

void LUMAAppDelegate::handleDoubleClick()
{
    if (const SiteList::Record record = sitesArrayController.record(window->selectedRow()))
        open(record);
}

void LUMAAppDelegate::open(const SiteList::Record& record)
{
    if (QWidget* const shown = WindowRegistry::instance().windowShowing(record.get())) {
        WindowRegistry::bringToFront(shown);
        return;
    }
    if (m_opening.contains(record))
        return;
    m_opening += record;
    if (!m_passwords.whenLoaded(record, [this, record] { openSite(record); }))
        window->showNotice(waitingForPassword());
}

void LUMAAppDelegate::openSite(const SiteList::Record& record)
{
    m_opening.removeAll(record);
    if (m_opening.isEmpty())
        window->showNotice({});
    normalise(*record->sourceDict());
    normalise(*record->destinationDict());
    m_services.showSite(record);
}

void LUMAAppDelegate::add()
{
    const QVariant record = m_preferences.value(Preferences::siteTemplate);
    if (record.typeId() != QMetaType::QVariantMap)
        return;
    window->editNameOf(sitesArrayController.add(record.toMap()));
}

void LUMAAppDelegate::newSite()
{
    const QVariant record = m_preferences.value(Preferences::siteTemplate);
    auto* assistant = new NewSiteAssistant(record.toMap(), m_services.mounter, window.get());
    connect(assistant, &NewSiteAssistant::skipped, this, &LUMAAppDelegate::add);
    connect(assistant, &QDialog::accepted, this, [this, assistant] {
        addAndSelect(assistant->record());
        if (assistant->opensSite())
            handleDoubleClick();
    });
    assistant->open();
}

void LUMAAppDelegate::addAndSelect(const QVariantMap& record)
{
    window->select(sitesArrayController.add(record));
}

void LUMAAppDelegate::openSampleSite()
{
    const auto record = sampleSite();
    if (!record) {
        sheet(window.get(), QStringLiteral("sampleSheet"), tr("The sample site can't be copied."),
              QString::fromStdString(record.error().text))
            ->open();
        return;
    }
    const QList<QVariantMap> records = sitesArrayController.records();
    const qsizetype known = records.indexOf(*record);
    if (known >= 0)
        window->select(static_cast<int>(known));
    else
        addAndSelect(*record);
    handleDoubleClick();
}

// Copies the password, too, which may have to be read first.
void LUMAAppDelegate::duplicate()
{
    const SiteList::Record record = sitesArrayController.record(window->selectedRow());
    if (record && !m_passwords.whenLoaded(record, [this, record] { addCopyOf(*record); }))
        window->showNotice(waitingForPassword());
}

void LUMAAppDelegate::addCopyOf(const SiteRecord& record)
{
    if (m_opening.isEmpty())
        window->showNotice({});
    QVariantMap copy = SitePasswords::asNew(record.values());
    copy[QStringLiteral("siteID")] = tr("%1 copy").arg(record.siteID());
    window->editNameOf(sitesArrayController.add(copy));
}

Result<void> LUMAAppDelegate::exportTo(const QString& file) const
{
    QList<QVariantMap> records = sitesArrayController.records();
    for (QVariantMap& record : records)
        record = SitePasswords::withoutPasswords(record);
    return writeFile(QFile::encodeName(file).toStdString(), archiveSites(records).toStdString());
}

Result<void> LUMAAppDelegate::importFrom(const QString& file)
{
    const auto records = sitesIn(file);
    if (!records)
        return records.error();
    addSites(*records);
    return {};
}

void LUMAAppDelegate::addSites(const QList<QVariantMap>& records)
{
    const int first = sitesArrayController.rowCount();
    for (const QVariantMap& record : records)
        sitesArrayController.add(SitePasswords::asNew(record));
    window->select(first);
}

void LUMAAppDelegate::offerImport(const QString& file)
{
    const QString title = tr("Import sites");
    const auto records = sitesIn(file);
    if (!records) {
        sheet(window.get(), QStringLiteral("sitesFileSheet"), title,
              QString::fromStdString(records.error().text))
            ->open();
        return;
    }
    QStringList names;
    for (const QVariantMap& record : records->mid(0, mostNames))
        names.append(SiteRecord(record).siteID());
    if (records->size() > mostNames)
        names.append(QStringLiteral("…"));
    QMessageBox* const box =
        sheet(window.get(), QStringLiteral("importSheet"),
              tr("Add the sites of “%1” to the list?").arg(QFileInfo(file).fileName()), names.join(u'\n'));
    box->buttons().first()->setText(tr("Import"));
    box->addButton(tr("Cancel"), QMessageBox::RejectRole);
    connect(box, &QMessageBox::accepted, this, [this, records = *records] { addSites(records); });
    box->open();
}

void LUMAAppDelegate::importSites()
{
    chooseFile(tr("Import sites"), QFileDialog::AcceptOpen,
               [this](const QString& file) { return importFrom(file); });
}

void LUMAAppDelegate::exportSites()
{
    chooseFile(tr("Export sites, without passwords"), QFileDialog::AcceptSave,
               [this](const QString& file) { return exportTo(file); });
}

void LUMAAppDelegate::chooseFile(const QString& title, QFileDialog::AcceptMode mode,
                                 const std::function<Result<void>(const QString&)>& use)
{
    auto* chooser = new QFileDialog(window.get(), title, {}, tr("Lists of sites (*.lumasites)"));
    chooser->setObjectName(QStringLiteral("sitesFileChooser"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setWindowModality(Qt::WindowModal);
    chooser->setAcceptMode(mode);
    chooser->setFileMode(mode == QFileDialog::AcceptSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    chooser->setDefaultSuffix(QStringLiteral("lumasites"));
    connect(chooser, &QFileDialog::fileSelected, this, [this, use, title](const QString& file) {
        if (const auto used = use(file); !used)
            sheet(window.get(), QStringLiteral("sitesFileSheet"), title,
                  QString::fromStdString(used.error().text))
                ->open();
    });
    chooser->open();
}

void LUMAAppDelegate::remove()
{
    if (sitesArrayController.rowCount() == 1) {
        warnOfLastRecord();
        return;
    }
    const SiteList::Record record = sitesArrayController.record(window->selectedRow());
    if (!record)
        return;
    QMessageBox* box = sheet(window.get(), QStringLiteral("removeSheet"),
                             tr("Remove “%1” from the list? Its files stay.").arg(record->siteID()), {});
    box->buttons().first()->setText(tr("Remove"));
    box->addButton(tr("Cancel"), QMessageBox::RejectRole);
    connect(box, &QMessageBox::accepted, this, [this, record] { removeRecord(record); });
    box->open();
}

void LUMAAppDelegate::removeRecord(const SiteList::Record& record)
{
    const int row = sitesArrayController.rowOf(record.get());
    const auto next = sitesArrayController.remove(row);
    if (!next)
        return;
    m_passwords.forget(*record);
    window->select(*next);
    addUndo(tr("&Undo removal of “%1”").arg(SiteList::menuText(record->siteID())),
            [this, row, record] { putBack(row, record); });
}

void LUMAAppDelegate::putBack(int row, const SiteList::Record& record)
{
    m_passwords.remember(*record);
    window->select(sitesArrayController.putBack(row, record));
}

void LUMAAppDelegate::addUndo(const QString& text, std::function<void()> undo)
{
    m_undoSteps.push_back({.text = text, .undo = std::move(undo)});
    showUndo();
}

void LUMAAppDelegate::undo()
{
    if (m_undoSteps.empty())
        return;
    const UndoStep step = std::move(m_undoSteps.back());
    m_undoSteps.pop_back();
    step.undo();
    showUndo();
}

void LUMAAppDelegate::showUndo()
{
    window->setUndo(m_undoSteps.empty() ? QString() : m_undoSteps.back().text);
}

void LUMAAppDelegate::warnOfLastRecord()
{
    sheet(window.get(), QStringLiteral("lastRecordSheet"), tr("Warning"),
          tr("Last record in the list cannot be deleted."))
        ->open();
}

void LUMAAppDelegate::getPath(SiteSide side)
{
    const SiteList::Record record = sitesArrayController.record(window->selectedRow());
    if (!record)
        return;
    const std::shared_ptr<ObservedDictionary> target =
        side == SiteSide::Source ? record->sourceDict() : record->destinationDict();
    auto* panel = new QFileDialog(window.get(), tr("Select the path to the site folder"),
                                  target->string(endpoint::path));
    panel->setObjectName(QStringLiteral("getPathPanel"));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setLabelText(QFileDialog::Accept, tr("Choose"));
    panel->setWindowModality(Qt::WindowModal);
    connect(panel, &QFileDialog::fileSelected, this,
            [target](const QString& folder) { target->setValue(endpoint::path, folder); });
    panel->open();
}

void LUMAAppDelegate::loadURL() const
{
    (void)m_services.openUrl(QUrl(QStringLiteral("http://") + maker::webSite + maker::productPage));
}

void LUMAAppDelegate::checkForUpdate()
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
        box->addButton(tr("Cancel"), QMessageBox::RejectRole);
        connect(box, &QMessageBox::accepted, this, &LUMAAppDelegate::loadURL);
    }
    box->open();
}

void LUMAAppDelegate::showPreferences()
{
    (new PreferencesDialog(m_preferences, window.get()))->open();
}

} // namespace luma
