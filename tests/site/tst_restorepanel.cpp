// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/site/sitewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QComboBox>
#include <QMessageBox>
#include <QTest>

using namespace luma;
using luma::test::SiteWindow;
using luma::test::TwoFolders;

class tst_restorepanel final : public QObject
{
    Q_OBJECT

private:
    static QString rows(const SiteWindow& site)
    {
        QString all;
        const QAbstractItemModel& model = *site.find<QTableView>("restoreTableView").model();
        for (int row = 0; row < model.rowCount(); ++row) {
            const bool isTicked = model.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
            all += (isTicked ? u'+' : u'-') + model.index(row, SyncTableModel::NameColumn).data().toString() +
                   u' ';
        }
        return all;
    }
    static bool openPanel(const SiteWindow& site)
    {
        site.find<QAction>("restoreAction").trigger();
        return QTest::qWaitFor([&] { return !site.find<QWidget>("restoreProgress").isVisible(); }, 60'000);
    }

private slots:
    void publishedFilesArePutBack_changedOnesAfterAQuestion()
    {
        const TwoFolders folders;
        for (const char* name : {"about.html", "index.html"}) {
            folders.put(std::string("receiving/") + name, "old", 100);
            folders.put(std::string("sending/") + name, "newer", 50);
        }
        const SiteWindow site(folders);
        site.window->siteDict()->setKeepChoice({.days = 30});
        QVERIFY(openPanel(site));
        QVERIFY(site.text("restorePlaceholder").startsWith("No old versions are kept."));
        test::saveScreenshots(site.find<QWidget>("restorePanel"), "restore-empty");
        site.click("restoreCloseButton");
        QVERIFY(site.compare());
        QVERIFY(site.transfer());
        site.click("cancelButton");
        folders.put("receiving/about.html", "by hand", 10);

        QVERIFY(openPanel(site));
        QCOMPARE(rows(site), "-about.html +index.html ");
        QCOMPARE(site.find<QComboBox>("restorePublish").count(), 1);
        test::saveScreenshots(site.find<QWidget>("restorePanel"), "restore");
        site.click("restoreButton");
        QTRY_COMPARE(rows(site), "-about.html ");
        QCOMPARE(folders.bytesOf("receiving/index.html"), std::string("old"));
        QCOMPARE(folders.bytesOf("receiving/about.html"), std::string("by hand"));

        site.click("restoreAllCheckBox");
        site.click("restoreButton");
        auto* const question = site.window->findChild<QMessageBox*>("restoreQuestion");
        QVERIFY(question);
        test::saveScreenshots(*question, "restore-question");
        question->button(QMessageBox::Cancel)->click();
        QCOMPARE(folders.bytesOf("receiving/about.html"), std::string("by hand"));
        QCOMPARE(rows(site), "+about.html ");
    }
};

LUMA_TEST(tst_restorepanel)
#include "tst_restorepanel.moc"
