// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/lumaappdelegate.h"
#include "app/sitelistwindow.h"
#include "app/sitetemplate.h"
#include "base/propertylist.h"
#include "browser/endpoint.h"
#include "desktop/windowregistry.h"
#include "site/sitearchive.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "tests/support/tabwalk.h"
#include "tests/support/unavailablemounter.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTreeView>
#include <QUrl>
#include <QWizard>

using namespace luma;

class tst_sitelistwindow final : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<LUMAAppDelegate> m_delegate;
    QStringList m_commands;
    std::string m_shellAnswer;
    QList<SiteList::Record> m_shown;
    QList<QUrl> m_urls;

    QString file() const { return m_folder->filePath("luma.conf"); }

    LUMAAppDelegate::Services services()
    {
        return {[this](const std::vector<std::string>& words) {
                    m_commands += QString::fromStdString(words.back());
                    return m_shellAnswer;
                },
                [this](const SiteList::Record& record) { m_shown += record; },
                [this](const QUrl& url) {
                    m_urls += url;
                    return true;
                },
                nullptr, [] { return std::make_shared<test::UnavailableMounter>(); }};
    }

    void launch()
    {
        m_delegate.reset();
        m_preferences = std::make_unique<Preferences>(file(), LUMAAppDelegate::initialValues());
        m_delegate = std::make_unique<LUMAAppDelegate>(*m_preferences, services());
        m_delegate->applicationWillFinishLaunching();
        m_delegate->applicationDidFinishLaunching();
        window().show();
        QVERIFY(QTest::qWaitForWindowExposed(&window()));
    }

    void launchWith(const QList<QVariantMap>& records)
    {
        Preferences before(file());
        before.setValue(Preferences::sitesArrayData, archiveSites(records));
        QVERIFY(before.save());
        launch();
    }

    QList<QVariantMap> storedRecords() const
    {
        const auto records =
            unarchiveSites(Preferences(file()).value(Preferences::sitesArrayData).toByteArray());
        return records ? *records : QList<QVariantMap>();
    }

    static QList<QVariantMap> numbered(int count)
    {
        QList<QVariantMap> records;
        for (int i = 1; i <= count; ++i) {
            QVariantMap record = siteTemplate();
            QVariantMap destination = record["destinationDict"].toMap();
            destination[endpoint::server] = QStringLiteral("www%1.example.org").arg(i);
            record["destinationDict"] = destination;
            record["siteID"] = QStringLiteral("Site number %1").arg(i);
            records += record;
        }
        return records;
    }

    /// The last digits of the names, in the order of the list.
    QString order()
    {
        QString digits;
        for (int row = 0; row < m_delegate->sites().rowCount(); ++row)
            digits += m_delegate->sites().record(row)->siteID().right(1);
        return digits;
    }

    SiteListWindow& window() { return m_delegate->siteListWindow(); }

    template <class Widget>
    Widget* find(const char* name, const char* parent = nullptr)
    {
        const QObject* root = parent ? window().findChild<QWidget*>(QLatin1StringView(parent)) : &window();
        return root->findChild<Widget*>(QLatin1StringView(name));
    }

    void click(const char* button, const char* parent = nullptr)
    {
        QTest::mouseClick(find<QPushButton>(button, parent), Qt::LeftButton);
    }

    void answerRemoval()
    {
        QTRY_VERIFY(find<QMessageBox>("removeSheet"));
        auto* question = find<QMessageBox>("removeSheet");
        QTest::mouseClick(question->buttons().first(), Qt::LeftButton);
        QTRY_VERIFY(!find<QMessageBox>("removeSheet"));
        window().activateWindow();
        QTRY_VERIFY(window().isActiveWindow());
    }

    void typeInto(QLineEdit* field, const QString& text)
    {
        field->setFocus();
        field->selectAll();
        for (const QChar character : text)
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(character), Qt::NoModifier);
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_commands.clear();
        m_shown.clear();
        m_urls.clear();
        m_shellAnswer.clear();
    }
    void cleanup() { m_delegate.reset(); }

    void firstStart_offersANewAndTheSampleSite()
    {
        launch();
        QCOMPARE(m_delegate->sites().rowCount(), 0);
        QVERIFY(find<QPushButton>("newSiteButton")->isVisible());
        QVERIFY(!find<QPushButton>("openButton")->isVisible());
        test::saveScreenshots(window(), "first-start");
        QCOMPARE(m_commands.first(), QStringLiteral("ps aux | grep -v grep | grep LUMAWatcher | "
                                                    "awk '{print $2}' | xargs kill"));
        click("sampleSiteButton");
        QCOMPARE(m_shown.size(), 1);
        QVERIFY(!find<QPushButton>("newSiteButton")->isVisible());
        const QString pages = m_shown[0]->sourceDict()->string(endpoint::path);
        QVERIFY2(QFile::exists(pages + "/index.html"), qPrintable(pages));
        QVERIFY(QFile::remove(pages + "/index.html"));
        // What the user has done to it stays.
        window().findChild<QAction*>("sampleAction")->trigger();
        QCOMPARE(m_delegate->sites().rowCount(), 1);
        QVERIFY(!QFile::exists(pages + "/index.html"));
    }

    void assistant_makesASite()
    {
        launch();
        click("newSiteButton");
        auto* assistant = find<QWizard>("newSiteAssistant");
        QAbstractButton* next = assistant->button(QWizard::NextButton);
        QVERIFY(!next->isEnabled());
        typeInto(find<QLineEdit>("sourcePath"), "/nowhere/at all");
        QVERIFY(!next->isEnabled());
        QCOMPARE(find<QLabel>("pagesHint")->text(), "/nowhere/at all: no such folder");
        test::saveScreenshots(*assistant, "assistant-1");
        typeInto(find<QLineEdit>("sourcePath"), m_folder->path() + "/ ");
        next->click();
        QVERIFY(!next->isEnabled());
        typeInto(find<QLineEdit>("server", "newSiteAssistant"), " web.example");
        typeInto(find<QLineEdit>("path", "newSiteAssistant"), "/srv/www/");
        typeInto(find<QLineEdit>("user", "newSiteAssistant"), "anna");
        typeInto(find<QLineEdit>("password", "newSiteAssistant"), "secret");
        click("testButton");
        QTRY_COMPARE(find<QLabel>("testResult")->text(), "<b>no</b> server");
        test::saveScreenshots(*assistant, "assistant-2");
        next->click();
        test::saveScreenshots(*assistant, "assistant-3");
        assistant->button(QWizard::FinishButton)->click();
        QTRY_COMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown[0]->siteID(), QFileInfo(m_folder->path()).fileName());
        QCOMPARE(m_shown[0]->sourceDict()->string(endpoint::path), m_folder->path());
        const ObservedDictionary& destination = *m_shown[0]->destinationDict();
        QCOMPARE(destination.string(endpoint::protocol), "sftp://");
        QCOMPARE(destination.string(endpoint::server), "web.example");
        QCOMPARE(destination.string(endpoint::path), "/srv/www");
        QCOMPARE(destination.string(endpoint::password), "secret");
        QTRY_COMPARE(storedRecords(), m_delegate->sites().records());
    }

    void assistant_canBeSkippedAndClosedWhileItTests()
    {
        launch();
        m_delegate->newSite();
        auto* assistant = find<QWizard>("newSiteAssistant");
        assistant->button(QWizard::CustomButton1)->click();
        QCOMPARE(m_delegate->sites().records(), QList<QVariantMap>{siteTemplate()});
        QTRY_VERIFY(!find<QWizard>("newSiteAssistant"));
        m_delegate->newSite();
        assistant = find<QWizard>("newSiteAssistant");
        typeInto(find<QLineEdit>("sourcePath"), m_folder->path());
        assistant->button(QWizard::NextButton)->click();
        auto* protocol = find<QComboBox>("protocol", "newSiteAssistant");
        protocol->setCurrentIndex(protocol->findData(QString(endpoint::fileProtocol)));
        typeInto(find<QLineEdit>("path", "newSiteAssistant"), m_folder->path());
        QVERIFY(!find<QPushButton>("testButton")->isEnabled());
        typeInto(find<QLineEdit>("path", "newSiteAssistant"), QDir::rootPath());
        click("testButton");
        assistant->reject();
        QTRY_VERIFY(!find<QWizard>("newSiteAssistant"));
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QCOMPARE(m_delegate->sites().rowCount(), 1);
    }

    void damagedStore_startsEmptyAndIsKeptAside_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::newRow("nonsense") << QVariant(QByteArray("nonsense"));
        QTest::newRow("no bytes") << QVariant(QByteArray());
        QTest::newRow("cut off") << QVariant(archiveSites({siteTemplate()}).chopped(40));
        QTest::newRow("text") << QVariant(QStringLiteral("text"));
        QTest::newRow("a list") << QVariant(QVariantList{siteTemplate()});
        QTest::newRow("a record") << QVariant(siteTemplate());
        const auto record = writePropertyList(siteTemplate(), PropertyListFormat::Binary);
        QTest::newRow("the archive of a record") << QVariant(*writePropertyList(
            QVariantMap{{QStringLiteral("sitesArray"), *record}}, PropertyListFormat::Binary));
    }
    void damagedStore_startsEmptyAndIsKeptAside()
    {
        QFETCH(QVariant, stored);
        const QVariant earlier = QByteArray("another damage");
        Preferences before(file());
        before.setValue(QStringLiteral("sitesArrayDataUnreadable"), earlier);
        before.setValue(Preferences::sitesArrayData, stored);
        QVERIFY(before.save());
        launch();
        QCOMPARE(m_delegate->sites().rowCount(), 0);
        QVERIFY(find<QLabel>("emptyListLabel")->isVisible());
        QVERIFY(!find<QPushButton>("openButton")->isEnabled());
        test::screenshot(window(), "sites-0");
        window().findChild<QAction*>("openAction")->trigger();
        m_delegate->add();
        QCOMPARE(m_delegate->sites().records(), QList<QVariantMap>{siteTemplate()});
        QVERIFY(m_delegate->applicationWillTerminate());
        const Preferences after(file());
        QCOMPARE(after.value(QStringLiteral("sitesArrayDataUnreadable")), earlier);
        QCOMPARE(after.value(QStringLiteral("sitesArrayDataUnreadable2")), stored);
        QCOMPARE(storedRecords(), m_delegate->sites().records());
    }

    void edits_areStoredBeforeTheProgramQuits()
    {
        launchWith(numbered(2));
        typeInto(find<QLineEdit>("siteID"), QStringLiteral("Café"));
        QVERIFY(storedRecords() != m_delegate->sites().records());
        QTRY_COMPARE(storedRecords(), m_delegate->sites().records());
        m_delegate->add();
        QTRY_COMPARE(storedRecords(), m_delegate->sites().records());
        QCOMPARE(storedRecords().size(), 3);
    }

    // Where there is no session bus, two processes run.
    void listOfAnotherProcess_isNotOverwrittenByAnOlderOne()
    {
        launchWith(numbered(2));
        Preferences other(file());
        other.setValue(Preferences::sitesArrayData, archiveSites(numbered(5)));
        QVERIFY(other.save());
        QVERIFY(m_delegate->applicationWillTerminate());
        QCOMPARE(storedRecords(), numbered(5));
        typeInto(find<QLineEdit>("siteID"), QStringLiteral("x"));
        QTRY_COMPARE(storedRecords(), m_delegate->sites().records());
        QCOMPARE(Preferences(file()).value(QStringLiteral("sitesArrayDataReplaced")),
                 QVariant(archiveSites(numbered(5))));
    }

    void failedSave_isShownUntilOneSucceeds()
    {
        launchWith({siteTemplate()});
        auto* error = find<QLabel>("saveErrorLabel");
        QVERIFY(!error->isVisible());
        const QString folder = m_folder->path();
        QVERIFY(QDir().rename(folder, folder + QStringLiteral("-away")));
        QVERIFY(QFile(folder).open(QFile::WriteOnly | QFile::NewOnly));
        typeInto(find<QLineEdit>("siteID"), QStringLiteral("x"));
        QTRY_VERIFY(error->isVisible());
        QVERIFY(error->text().contains(file()));
        QVERIFY(QFile::remove(folder));
        QVERIFY(QDir().rename(folder + QStringLiteral("-away"), folder));
        typeInto(find<QLineEdit>("siteID"), QStringLiteral("y"));
        QTRY_VERIFY(!error->isVisible());
        QCOMPARE(storedRecords(), m_delegate->sites().records());
    }

    void edits_reachTheRecordAndTheStore()
    {
        launchWith({siteTemplate()});
        typeInto(find<QLineEdit>("siteID"), "Café");
        typeInto(find<QLineEdit>("webAddress"), " http://a.example/docs  www.b.example ");
        typeInto(find<QLineEdit>("password", "destinationDict"), "p'w\"%");
        find<QPlainTextEdit>("ignoredNames")->setPlainText("*.psd\ndrafts/");
        QVERIFY(!find<QLineEdit>("keptFolder")->isEnabled());
        find<QSpinBox>("keptDays")->setValue(30);
        typeInto(find<QLineEdit>("keptFolder"), "/srv/old");
        QTest::mouseClick(find<QCheckBox>("autoconnect", "sourceDict"), Qt::LeftButton, {}, QPoint(8, 8));
        auto* protocol = find<QComboBox>("protocol", "destinationDict");
        protocol->setFocus();
        QTest::keyClick(protocol, Qt::Key_Down);
        QCOMPARE(m_delegate->sites().index(0).data().toString(), "Café");
        QVERIFY(m_delegate->applicationWillTerminate());
        QCOMPARE(m_commands.size(), 2);
        launch();
        const SiteList::Record record = m_delegate->sites().record(0);
        QCOMPARE(record->siteID(), QStringLiteral("Café"));
        QCOMPARE(find<QLineEdit>("webAddress")->text(), " http://a.example/docs  www.b.example ");
        QCOMPARE(record->webAddresses(),
                 (std::vector<std::string>{"http://a.example/docs", "https://www.b.example"}));
        QCOMPARE(find<QPlainTextEdit>("ignoredNames")->toPlainText(), "*.psd\ndrafts/");
        QCOMPARE(record->ignoredNames(), "*.psd\ndrafts/");
        QVERIFY((record->keepChoice() == KeepChoice{.days = 30, .folder = "/srv/old"}));
        QCOMPARE(find<QSpinBox>("keptDays")->value(), 30);
        QCOMPARE(find<QLineEdit>("keptFolder")->text(), "/srv/old");
        QCOMPARE(record->destinationDict()->value(endpoint::password), QVariant(QStringLiteral("p'w\"%")));
        QCOMPARE(record->destinationDict()->value(endpoint::protocol), QVariant(QStringLiteral("dav://")));
        QCOMPARE(record->sourceDict()->value(endpoint::autoconnect), QVariant(qlonglong{0}));
    }

    void preferences_areStoredByOkAlone()
    {
        launch();
        for (const char* button : {"Cancel", "OK"}) {
            m_delegate->showPreferences();
            auto* dialog = find<QDialog>("preferencesDialog");
            QVERIFY(!dialog->findChild<QCheckBox*>("tidiesPages")->isChecked());
            QVERIFY(dialog->findChild<QCheckBox*>("fragmentsAreChecked")->isChecked());
            for (const char* box : {"tidiesPages", "extensionsMayBeLeftOut", "fragmentsAreChecked"})
                dialog->findChild<QCheckBox*>(box)->click();
            auto* names = dialog->findChild<QLineEdit*>("indexPages");
            QVERIFY(names->placeholderText().startsWith("index.html, index.htm, "));
            typeInto(names, "home.html, start.php");
            auto* const templates = dialog->findChild<QLineEdit*>("templateFolder");
            QVERIFY(templates->text().isEmpty() && templates->placeholderText().endsWith("/luma/templates"));
            typeInto(templates, "~/my & <templates>/");
            auto* pages = dialog->findChild<QTabWidget*>("pages");
            for (int page = pages->count() - 1; page >= 0; --page) {
                pages->setCurrentIndex(page);
                test::saveScreenshots(*dialog, "preferences-" + pages->tabText(page));
            }
            dialog->findChild<QCheckBox*>("reopensSites")->click();
            dialog->findChild<QSpinBox*>("keptDays")->setValue(30);
            dialog->findChild<QPlainTextEdit*>("ignoredNames")->setPlainText("*.psd");
            auto* language = dialog->findChild<QComboBox*>("language");
            language->setCurrentIndex(language->findData("de"));
            QCOMPARE(language->currentText(), "Deutsch");
            auto* rules = dialog->findChild<QComboBox*>("linkRules");
            rules->setFocus();
            QTest::keyClick(rules, Qt::Key_Down);
            QVERIFY(!names->isEnabled());
            for (QAbstractButton* choice : dialog->findChildren<QAbstractButton*>()) {
                if (choice->text().remove(u'&') == QLatin1StringView(button))
                    choice->click();
            }
            QTRY_VERIFY(!find<QDialog>("preferencesDialog"));
            const bool isStored = *button == 'O';
            const Preferences stored(file(), LUMAAppDelegate::initialValues());
            const ReportChoices choices = stored.reportChoices();
            QCOMPARE(stored.value(Preferences::tidiesPages).toBool(), isStored);
            QCOMPARE(choices.linkRules == LinkRules::Letter, isStored);
            QCOMPARE(stored.value(Preferences::templateFolder).toString(),
                     isStored ? QDir::home().filePath("my & <templates>") : QString());
            QCOMPARE(choices.webRules.extensionsMayBeLeftOut, isStored);
            QCOMPARE(choices.webRules.fragmentsAreChecked, !isStored);
            QCOMPARE(choices.webRules.indexNames,
                     isStored ? (std::vector<std::string>{"home.html", "start.php"}) : WebRules().indexNames);
            QCOMPARE(stored.value(Preferences::language).toString(), QLatin1StringView(isStored ? "de" : ""));
            QCOMPARE(stored.value(Preferences::reopensSites).toBool(), isStored);
            m_delegate->add();
            const SiteList::Record added = m_delegate->sites().record(window().selectedRow());
            QCOMPARE(added->ignoredNames(), isStored ? "*.psd" : "");
            QCOMPARE(added->keepChoice().days, isStored ? 30 : 0);
        }
    }

    void password_isMaskedUntilShownAndAgainForTheNextSite()
    {
        launchWith(numbered(2));
        auto* password = find<QLineEdit>("password", "destinationDict");
        QCOMPARE(password->echoMode(), QLineEdit::Password);
        click("showPassword", "destinationDict");
        QCOMPARE(password->echoMode(), QLineEdit::Normal);
        window().select(1);
        QCOMPARE(password->echoMode(), QLineEdit::Password);
    }

    void unusedFields_areDisabled()
    {
        launchWith({siteTemplate()});
        for (const char* field : {"server", "volume", "user", "password", "sshPortNo"}) {
            QVERIFY2(!find<QLineEdit>(field, "sourceDict")->isEnabled(), field);
            QVERIFY2(find<QLineEdit>(field, "destinationDict")->isEnabled(), field);
        }
        QVERIFY(find<QLineEdit>("path", "sourceDict")->isEnabled());
    }

    // A number where a text belongs, texts where numbers belong, and keys that are missing.
    void oddRecord_isShownAndNotConverted()
    {
        const QVariantMap odd = {{"siteID", qlonglong{7}},
                                 {"future", true},
                                 {"destinationDict", QVariantMap{{endpoint::sshPortNo, qlonglong{2222}},
                                                                 {endpoint::autoconnect, "1"},
                                                                 {endpoint::protocol, "gopher://"},
                                                                 {endpoint::path, QVariantList{"/a"}}}},
                                 {"sourceDict", qlonglong{3}}};
        launchWith({odd, siteTemplate()});
        QCOMPARE(find<QLineEdit>("sshPortNo", "destinationDict")->text(), "2222");
        QCOMPARE(find<QComboBox>("protocol", "destinationDict")->currentText(), "gopher://");
        QVERIFY(!find<QCheckBox>("autoconnect", "destinationDict")->isChecked());
        QCOMPARE(m_delegate->sites().index(0).data().toString(), QString());
        test::screenshot(window(), "sites-odd");
        window().select(1);
        QCOMPARE(find<QComboBox>("protocol", "destinationDict")->currentData(),
                 QVariant(QStringLiteral("sftp://")));
        window().select(0);
        click("openButton");
        QCOMPARE(m_shown.size(), 1);
        QCOMPARE(m_delegate->sites().records().first(), odd);
        typeInto(find<QLineEdit>("sshPortNo", "destinationDict"), "23");
        QCOMPARE(m_delegate->sites().record(0)->destinationDict()->value(endpoint::sshPortNo),
                 QVariant("23"));
    }

    void add_selectsTheNewRowAndNeedsATemplate()
    {
        launchWith(numbered(100));
        m_delegate->add();
        QCOMPARE(window().selectedRow(), 100);
        const auto* list = find<QTreeView>("sitesTableView");
        const QRect shown = list->visualRect(list->currentIndex());
        QVERIFY2(shown.top() >= 0 && shown.bottom() <= list->viewport()->height(),
                 qPrintable(QStringLiteral("%1 to %2").arg(shown.top()).arg(shown.bottom())));
        QTRY_VERIFY(find<QLineEdit>("siteID")->hasFocus());
        QCOMPARE(find<QLineEdit>("siteID")->selectedText(), find<QLineEdit>("siteID")->text());
        test::screenshot(window(), "sites-101");
        m_preferences->setValue(Preferences::siteTemplate, "no dictionary");
        m_delegate->add();
        QCOMPARE(m_delegate->sites().rowCount(), 101);
    }

    void remove_asksAndSelectsTheNextAndKeepsTheLast()
    {
        launchWith(numbered(3));
        window().select(1);
        click("removeButton");
        auto* question = find<QMessageBox>("removeSheet");
        QVERIFY(question);
        QCOMPARE(question->text(), QStringLiteral("Remove “Site number 2” from the list? Its files stay."));
        test::screenshot(*question, "sites-remove");
        question->reject();
        QTRY_VERIFY(!find<QMessageBox>("removeSheet"));
        QCOMPARE(m_delegate->sites().rowCount(), 3);
        click("removeButton");
        answerRemoval();
        QCOMPARE(window().selectedRow(), 1);
        QCOMPARE(find<QLineEdit>("siteID")->text(), "Site number 3");
        QTest::keyClick(find<QTreeView>("sitesTableView"), Qt::Key_Delete);
        answerRemoval();
        QCOMPARE(window().selectedRow(), 0);
        click("removeButton");
        QCOMPARE(m_delegate->sites().rowCount(), 1);
        auto* sheet = find<QMessageBox>("lastRecordSheet");
        QVERIFY(sheet);
        QCOMPARE(sheet->text(), "Warning");
        QCOMPARE(sheet->informativeText(), "Last record in the list cannot be deleted.");
        QCOMPARE(sheet->buttons().size(), 1);
        test::screenshot(*sheet, "sites-last");
        sheet->accept();
    }

    void removedSites_comeBackWhereTheyWere()
    {
        launchWith(numbered(3));
        auto* undo = window().findChild<QAction*>(QStringLiteral("undoAction"));
        QVERIFY(!undo->isEnabled());
        const SiteList::Record second = m_delegate->sites().record(1);
        for (const int row : {1, 1}) {
            window().select(row);
            find<QTreeView>("sitesTableView")->setFocus();
            QTest::keyClick(find<QTreeView>("sitesTableView"), Qt::Key_Backspace, Qt::ControlModifier);
            answerRemoval();
        }
        QCOMPARE(m_delegate->sites().rowCount(), 1);
        QTest::keyClick(find<QTreeView>("sitesTableView"), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(undo->isEnabled());
        undo->trigger();
        QVERIFY(!undo->isEnabled());
        QCOMPARE(m_delegate->sites().records(), numbered(3));
        QCOMPARE(m_delegate->sites().record(1), second);
        QCOMPARE(window().selectedRow(), 1);
        second->setSiteID(QStringLiteral("shared still"));
        QTRY_COMPARE(storedRecords(), m_delegate->sites().records());
    }

    void sites_areDuplicatedSortedExportedAndImported()
    {
        launchWith(numbered(3));
        m_delegate->sites().record(0)->setSiteID("site number 10");
        m_delegate->sites().record(0)->destinationDict()->setValue(endpoint::password, "secret");
        m_delegate->sites().record(0)->destinationDict()->setValue(endpoint::passwordID, "an id");
        window().select(0);
        window().findChild<QAction*>("duplicateAction")->trigger();
        QCOMPARE(window().selectedRow(), 3);
        const SiteList::Record copy = m_delegate->sites().record(3);
        QCOMPARE(copy->siteID(), "site number 10 copy");
        QCOMPARE(copy->destinationDict()->string(endpoint::password), "secret");
        QVERIFY(!copy->destinationDict()->value(endpoint::passwordID).isValid());
        const auto* list = find<QTreeView>("sitesTableView");
        const auto firstShown = [list] { return list->model()->index(0, 0).data().toString(); };
        window().findChild<QAction*>("sortAction")->trigger();
        QCOMPARE(window().selectedRow(), 3);
        QCOMPARE(firstShown(), "Site number 2");
        window().findChild<QAction*>("sortAction")->trigger();
        QCOMPARE(firstShown(), "site number 10");
        copy->setFolder("Shops");
        QTRY_COMPARE(storedRecords(), m_delegate->sites().records());

        const QString exported = m_folder->filePath("all.lumasites");
        QVERIFY(m_delegate->exportTo(exported));
        QFile file(exported);
        QVERIFY(file.open(QFile::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.contains("www1.example.org") && !bytes.contains("secret") && !bytes.contains("an id"));
        QVERIFY(m_delegate->importFrom(exported));
        QCOMPARE(m_delegate->sites().rowCount(), 8);
        QCOMPARE(m_delegate->sites().record(7)->folder(), "Shops");
        QCOMPARE(window().selectedRow(), 4);
        QVERIFY(QFile::resize(exported, 0));
        QVERIFY(!m_delegate->importFrom(exported));
        QCOMPARE(m_delegate->sites().rowCount(), 8);
    }

    void sites_areArrangedInFoldersByKey()
    {
        launchWith(numbered(4));
        auto* list = find<QTreeView>("sitesTableView");
        list->setFocus();
        window().activateWindow();
        QTRY_VERIFY(window().isActiveWindow());
        const auto trigger = [this](const char* action) { window().findChild<QAction*>(action)->trigger(); };
        window().select(2);
        QTest::keyClick(list, Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(order(), "1324");
        QCOMPARE(window().selectedRow(), 1);
        trigger("newFolderAction");
        QTRY_VERIFY(list->findChild<QLineEdit*>());
        QTest::keyClicks(list->findChild<QLineEdit*>(), "Shops");
        QTest::keyClick(list->findChild<QLineEdit*>(), Qt::Key_Return);
        QTRY_COMPARE(m_delegate->sites().folders(), QStringList{"Shops"});
        QVERIFY(m_shown.isEmpty());
        QTRY_COMPARE(list->currentIndex().data().toString(), "Shops");
        window().select(3);
        auto* folders = window().findChild<QMenu*>("folderMenu");
        emit folders->aboutToShow();
        folders->actions().last()->trigger();
        QCOMPARE(order(), "1342");
        QCOMPARE(m_delegate->sites().record(2)->folder(), "Shops");
        QCOMPARE(list->model()->rowCount(list->model()->index(1, 0)), 2);
        test::saveScreenshots(window(), "sites-folders");
        list->setCurrentIndex(list->model()->index(1, 0));
        QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(order(), "1234");
        QTRY_COMPARE(storedRecords(), m_delegate->sites().records());
        QTest::keyClick(list, Qt::Key_Delete);
        QCOMPARE(m_delegate->sites().folders(), QStringList());
        QCOMPARE(order(), "1234");
        for (const char* expected : {"1234", "1342", "1324", "1324", "1324", "1234"}) {
            trigger("undoAction");
            QCOMPARE(order(), expected);
        }
        QCOMPARE(m_delegate->sites().folders(), QStringList());
        QVERIFY(!window().findChild<QAction*>("undoAction")->isEnabled());
    }

    void keysInTextFields_editTheText_data()
    {
        QTest::addColumn<QByteArray>("field");
        QTest::newRow("name") << QByteArray("siteID");
        QTest::newRow("path") << QByteArray("path");
        QTest::newRow("search") << QByteArray("searchField");
    }
    void keysInTextFields_editTheText()
    {
        QFETCH(QByteArray, field);
        launchWith(numbered(2));
        auto* edit = find<QLineEdit>(field.constData());
        typeInto(edit, QStringLiteral("site two"));
        QTest::keyClick(edit, Qt::Key_Backspace, Qt::ControlModifier);
        QCOMPARE(edit->text(), QStringLiteral("site "));
        edit->setCursorPosition(0);
        QTest::keyClick(edit, Qt::Key_Delete);
        QCOMPARE(edit->text(), QStringLiteral("ite "));
        QVERIFY(!find<QMessageBox>("removeSheet"));
        QCOMPARE(m_delegate->sites().rowCount(), 2);
    }

    void search_findsByNameOrServerAndOpensTheFirst()
    {
        launchWith(numbered(100));
        test::screenshot(window(), "sites-100");
        auto* field = find<QLineEdit>("searchField");
        typeInto(field, "WWW42.example");
        QCOMPARE(window().selectedRow(), 41);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown[0], m_delegate->sites().record(41));
        typeInto(find<QLineEdit>("siteID"), "Renamed");
        typeInto(find<QLineEdit>("server", "destinationDict"), "elsewhere");
        QCOMPARE(window().selectedRow(), 41);
        typeInto(field, "nowhere at all");
        QVERIFY(find<QLabel>("emptyListLabel")->isVisible());
        test::screenshot(window(), "sites-nothing-found");
        window().select(99);
        QCOMPARE(window().selectedRow(), 99);
        QCOMPARE(field->text(), QString());
    }

    void open_normalisesAndSharesTheRecord()
    {
        launchWith({siteTemplate()});
        typeInto(find<QLineEdit>("path", "destinationDict"), "/srv/www/ ");
        QWidget* rows = find<QTreeView>("sitesTableView")->viewport();
        QTest::mouseClick(rows, Qt::LeftButton, {}, QPoint(20, 12));
        QTest::mouseDClick(rows, Qt::LeftButton, {}, QPoint(20, 12));
        QCOMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown[0], m_delegate->sites().record(0));
        QCOMPARE(find<QLineEdit>("path", "destinationDict")->text(), "/srv/www");
        m_shown[0]->destinationDict()->setValue(endpoint::server, "new.example");
        QCOMPARE(find<QLineEdit>("server", "destinationDict")->text(), "new.example");
    }

    void open_trimsBlanksAndOneSlash()
    {
        launchWith({siteTemplate()});
        const auto text = [](const char* string) { return QVariant(QString::fromUtf8(string)); };
        struct Row
        {
            QLatin1StringView key;
            QVariant before;
            QVariant after;
        };
        for (const Row& row :
             {Row{endpoint::path, text("/Users/me/site/ "), text("/Users/me/site")},
              Row{endpoint::path, text("/"), text("")}, Row{endpoint::path, text("a//"), text("a/")},
              Row{endpoint::path, text("a /"), text("a ")},
              Row{endpoint::path, QByteArray("/a/ "), QByteArray("/a/ ")},
              Row{endpoint::server, text("\t host \t"), text("host")},
              Row{endpoint::server, text("host\n"), text("host\n")},
              Row{endpoint::volume, text(" v/ "), text("v/")}, Row{endpoint::user, text(" \t "), text("")},
              Row{endpoint::sshPortNo, qlonglong{22}, qlonglong{22}}}) {
            ObservedDictionary& side = *m_delegate->sites().record(0)->sourceDict();
            side.setValue(row.key, row.before);
            m_delegate->handleDoubleClick();
            QCOMPARE(side.value(row.key), row.after);
            QCOMPARE(side.value(row.key).typeId(), row.after.typeId());
        }
    }

    void sitesOnOneServer_haveAWindowEach()
    {
        launchWith({numbered(1).first(), numbered(1).first()});
        QWidget first;
        window().select(0);
        click("openButton");
        WindowRegistry::instance().add(&first, m_delegate->sites().record(0).get());
        window().select(1);
        click("openButton");
        QCOMPARE(m_shown.size(), 2);
        QVERIFY(m_shown[0] != m_shown[1]);
        window().select(0);
        click("openButton");
        QCOMPARE(m_shown.size(), 2);
        QTRY_VERIFY(first.isActiveWindow());
    }

    void sitesOpenAtTheQuit_areOpenedAtTheNextStart()
    {
        launchWith(numbered(3));
        QWidget second;
        WindowRegistry::instance().add(&second, m_delegate->sites().record(1).get());
        m_delegate->noteOpenSites();
        QVERIFY(m_delegate->applicationWillTerminate());
        launch();
        m_delegate->reopenSites();
        QVERIFY(m_shown.isEmpty());
        m_preferences->setValue(Preferences::reopensSites, true);
        m_delegate->reopenSites();
        QCOMPARE(m_shown, QList<SiteList::Record>{m_delegate->sites().record(1)});
    }

    void getPath_writesTheChosenFolderIntoItsEndpoint()
    {
        launchWith({siteTemplate()});
        m_delegate->sites().record(0)->sourceDict()->setValue(endpoint::path, m_folder->path());
        QVERIFY(QDir(m_folder->path()).mkdir("site ü"));
        const QString chosen = m_folder->filePath("site ü");
        click("pathButton", "sourceDict");
        auto* panel = find<QFileDialog>("getPathPanel");
        QVERIFY(panel);
        QCOMPARE(panel->windowTitle(), "Select the path to the site folder");
        QCOMPARE(panel->labelText(QFileDialog::Accept), "Choose");
        QCOMPARE(panel->directory().absolutePath(), m_folder->path());
        panel->selectFile(chosen);
        static_cast<QDialog*>(panel)->accept();
        QCOMPARE(find<QLineEdit>("path", "sourceDict")->text(), chosen);
        const QString destination = find<QLineEdit>("path", "destinationDict")->text();
        window().findChild<QAction*>("destinationPathAction")->trigger();
        QTRY_VERIFY(find<QFileDialog>("getPathPanel"));
        find<QFileDialog>("getPathPanel")->reject();
        QCOMPARE(find<QLineEdit>("path", "destinationDict")->text(), destination);
    }

    void updateCheck_offersTheProductPage()
    {
        launch();
        m_shellAnswer = "<b>2.0</b>";
        m_delegate->checkForUpdate();
        QTRY_VERIFY(find<QMessageBox>("updateSheet"));
        auto* sheet = find<QMessageBox>("updateSheet");
        QCOMPARE(sheet->text(), "An update for Postwick is available");
        QCOMPARE(sheet->informativeText(),
                 "\nThere is a newer version available (version <b>2.0</b>).\nClick OK to go to "
                 "the LUMA for Ventura web site.\n");
        QCOMPARE(sheet->buttons().size(), 2);
        QCOMPARE(sheet->buttons().first()->text(), "OK");
        for (const QLabel* label : sheet->findChildren<QLabel*>())
            QVERIFY(label->textFormat() == Qt::PlainText);
        test::screenshot(*sheet, "sites-update");
        QTest::mouseClick(sheet->buttons().first(), Qt::LeftButton);
        QCOMPARE(m_urls.size(), 1);
        QCOMPARE(m_urls[0].path(), "/software/LUMA/");
    }

    void tab_walksEveryStopBothWays()
    {
        launchWith(numbered(2));
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
            find<QLineEdit>("searchField")->setFocus();
            QCOMPARE(test::tabWalk(key), test::tabStops(window()));
        }
        QVERIFY(test::tabStops(window()).size() >= 17);
    }

    void smallWindow_putsTheEndpointsOneAboveTheOther()
    {
        launchWith(numbered(3));
        window().resize(window().minimumSizeHint());
        auto* source = find<QWidget>("sourceDict");
        auto* destination = find<QWidget>("destinationDict");
        QTRY_VERIFY(destination->y() > source->y());
        test::screenshot(window(), "sites-small");
        window().resize(1100, 500);
        QTRY_COMPARE(destination->y(), source->y());
    }

    void sizes_areRemembered()
    {
        launch();
        window().resize(901, 511);
        QVERIFY(m_delegate->applicationWillTerminate());
        launch();
        QCOMPARE(window().size(), QSize(901, 511));
    }
};

LUMA_TEST(tst_sitelistwindow)
#include "tst_sitelistwindow.moc"
