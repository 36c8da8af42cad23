// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/sitenamesmodel.h"
#include "tests/site/sitewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QComboBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTreeView>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::SiteWindow;
using luma::test::TwoFolders;

/// The window with the classes and ids of a site, in a real window.
class tst_sitenamespanel final : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] static QDialog& panel(const SiteWindow& site)
    {
        return *site.window->findChild<QDialog*>("siteNamesPanel");
    }
    [[nodiscard]] static QTreeView& view(const SiteWindow& site)
    {
        return *panel(site).findChild<QTreeView*>("siteNamesView");
    }
    [[nodiscard]] static QString note(const SiteWindow& site)
    {
        return panel(site).findChild<QLabel*>("siteNamesNote")->text();
    }

    static QStringList rows(const QTreeView& view)
    {
        QStringList rows;
        for (QModelIndex row = view.model()->index(0, 0); row.isValid(); row = view.indexBelow(row)) {
            QStringList cells;
            for (int column = 0; column < SiteNamesModel::ColumnCount; ++column)
                cells += row.siblingAtColumn(column).data().toString();
            rows += (row.parent().isValid() ? "  " : "") + cells.join(u'|');
        }
        return rows;
    }

    static void show(const SiteWindow& site)
    {
        site.window->findChild<QAction*>("namesAction")->trigger();
        QTRY_VERIFY(!panel(site).findChild<QWidget*>("siteNamesProgressIndicator")->isVisible());
    }

private slots:
    void names_areListedAndRenamed()
    {
        TwoFolders folders;
        folders.put("sending/index.html", "<p class='nav new'><p class=nav id=top><a href=#top>");
        folders.put("sending/a/x.html", "<p class=nav>");
        folders.put("sending/style.css", "a{}\n.nav{}\n.old{}\n.js{}\n#gone{}");
        folders.put("sending/t.js", "f('js', 'nav')");
        const auto before = folders.contents();
        const SiteWindow site(folders);
        show(site);
        const QAbstractItemModelTester tester(view(site).model());
        QCOMPARE(rows(view(site)),
                 (QStringList{".js|1|||only in scripts", ".nav|1|3|2|in scripts", ".new||1|1|no rule",
                              ".old|1|||unused", "#gone|1|||unused", "#top||1|1|1 link or label"}));
        QCOMPARE(note(site), "4 classes, 2 ids; 3 unused");
        view(site).expand(view(site).model()->index(1, 0));
        QCOMPARE(rows(view(site)).mid(2, 3),
                 (QStringList{"  style.css:2|1|||", "  a/x.html:1||1||", "  index.html:1||2||"}));
        view(site).setCurrentIndex(view(site).model()->index(1, 0));
        test::saveScreenshots(panel(site), "classes-and-ids");
        QSignalSpy opened(site.window, &HaldenDoc::placeRequested);
        emit view(site).activated(view(site).model()->index(2, 0, view(site).model()->index(1, 0)));
        QCOMPARE(opened.value(0).value(2).toUInt(), 1U);

        panel(site).findChild<QAbstractButton*>("siteNamesRenameButton")->click();
        auto* const dialog = panel(site).findChild<QInputDialog*>("renameNameDialog");
        QVERIFY(dialog);
        dialog->setTextValue("menu");
        dialog->accept();
        QDialog* preview = nullptr;
        QTRY_VERIFY((preview = site.window->findChild<QDialog*>("planPreview")));
        QCOMPARE(preview->findChild<QLabel*>("planNote")->text(),
                 "4 places in 3 files will change. Edit > Undo takes it back.");
        QCOMPARE(preview->findChild<QTreeView*>("planTable")->model()->index(0, 3).data().toString(),
                 "A script here mentions \"nav\"; scripts are not changed");
        test::saveScreenshots(*preview, "rename-class");
        preview->accept();
        QTRY_COMPARE(folders.bytesOf("sending/index.html"),
                     std::string("<p class='menu new'><p class=menu id=top><a href=#top>"));
        QTRY_VERIFY(rows(view(site)).contains(".menu|1|3|2|"));
        QTRY_VERIFY(site.isDone());
        site.window->findChild<QAction*>("undoMoveAction")->trigger();
        QTRY_COMPARE(folders.contents(), before);
    }

    void names_areFilteredAndSorted()
    {
        TwoFolders folders;
        folders.put("sending/index.html", "<p class='b a'><p class=b><p class=A>");
        folders.put("sending/s.css", ".b{}.c{}");
        const SiteWindow site(folders);
        show(site);
        panel(site).findChild<QLineEdit*>("siteNamesFilter")->setText("a");
        QCOMPARE(rows(view(site)).size(), 2);
        panel(site).findChild<QLineEdit*>("siteNamesFilter")->clear();
        view(site).sortByColumn(SiteNamesModel::Elements, Qt::DescendingOrder);
        QCOMPARE(rows(view(site)).first(), ".b|1|2|1|");
        panel(site).findChild<QComboBox*>("siteNamesShown")->setCurrentIndex(1);
        QCOMPARE(rows(view(site)), QStringList{".c|1|||unused"});
        panel(site).findChild<QLineEdit*>("siteNamesFilter")->setText("none");
        QCOMPARE(panel(site).findChild<QLabel*>("siteNamesPlaceholder")->text(),
                 "No name matches the filter.");
    }
};

LUMA_TEST(tst_sitenamespanel)
#include "tst_sitenamespanel.moc"
