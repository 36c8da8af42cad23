// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/foundplaces.h"
#include "browser/foundplacesview.h"
#include "browser/movenotices.h"
#include "tests/site/sitewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::SiteWindow;
using luma::test::TwoFolders;

/// The window that finds and replaces text in the site of a real window.
class tst_sitefindpanel final : public QObject
{
    Q_OBJECT

private:
    std::optional<TwoFolders> folders;
    std::optional<SiteWindow> site;

    template <class Widget>
    [[nodiscard]] Widget& find(const char* name) const
    {
        return *panel()->findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] QDialog* panel() const { return site->window->findChild<QDialog*>("siteFindPanel"); }
    [[nodiscard]] FoundPlacesView& view() const { return find<FoundPlacesView>("siteFindView"); }
    [[nodiscard]] QString note() const { return find<QLabel>("siteFindNote").text(); }

    // The rows of the table, those of a file indented below it; ticks as +, ~ and -.
    [[nodiscard]] QStringList rows() const
    {
        QStringList rows;
        for (QModelIndex row = view().model()->index(0, 0); row.isValid(); row = view().indexBelow(row)) {
            const QVariant tick = row.data(Qt::CheckStateRole);
            QString text = row.parent().isValid() ? "  " : "";
            if (tick.isValid())
                text += QStringLiteral("-~+").at(tick.toInt());
            text += row.data().toString() + u'|' + row.siblingAtColumn(FoundPlaces::Text).data().toString();
            if (!view().isColumnHidden(FoundPlaces::NewText))
                text += u'|' + row.siblingAtColumn(FoundPlaces::NewText).data().toString();
            rows += text;
        }
        return rows;
    }

    void search(const QString& text) const
    {
        find<QLineEdit>("siteFindField").setText(text);
        QTest::keyClick(&find<QLineEdit>("siteFindField"), Qt::Key_Return);
        QTRY_VERIFY(!find<QAbstractButton>("siteFindStopButton").isEnabled());
    }

    void replaceBy(const QString& text) const
    {
        find<QCheckBox>("siteFindReplaces").setChecked(true);
        find<QLineEdit>("siteFindReplacement").setText(text);
    }

private slots:
    void init()
    {
        folders.emplace();
        folders->put("sending/index.html", "<title>one</title>\n<p>The first <b>on</b>e, and one more");
        folders->put("sending/a/x.html", "<p title=one>Someone's one</p>");
        folders->put("sending/style.css", "/* one */");
        site.emplace(*folders);
        site->window->findChild<QAction*>("findInSiteAction")->trigger();
        QVERIFY(panel()->isVisible());
    }
    void cleanup()
    {
        site.reset();
        folders.reset();
    }

    void text_isFound()
    {
        test::saveScreenshots(*panel(), "find-in-site-empty");
        const QAbstractItemModelTester tester(view().model());
        search("ONE");
        QCOMPARE(rows(), (QStringList{"a/x.html|2 places", "  1:18|Someone's one", "  1:24|Someone's one",
                                      "index.html|2 places", "  2:17|The first one, and one more",
                                      "  2:30|The first one, and one more"}));
        QCOMPARE(note(), "4 places in 2 files");
        find<QToolButton>("siteFindWordsButton").click();
        search("one");
        QCOMPARE(note(), "3 places in 2 files");
        find<QComboBox>("siteFindSearched").setCurrentIndex(1);
        find<QCheckBox>("siteFindPages").setChecked(false);
        search("one");
        QCOMPARE(rows(), (QStringList{"style.css|1 place", "  1:4|/* one */"}));
        find<QCheckBox>("siteFindPages").setChecked(true);
        find<QLineEdit>("siteFindFolder").setText("/a/");
        search("one");
        QCOMPARE(note(), "2 places in 1 file");
        find<QToolButton>("siteFindExpressionButton").click();
        search("(one");
        QVERIFY(find<QLabel>("siteFindPlaceholder").text().startsWith("Not a regular expression"));
        search("nowhere");
        QCOMPARE(find<QLabel>("siteFindPlaceholder").text(), "Not found.");
    }

    void places_areOpenedFilteredAndSorted()
    {
        search("one");
        QSignalSpy opened(site->window, &HaldenDoc::placeRequested);
        view().setCurrentIndex(view().model()->index(1, 0, view().model()->index(1, 0)));
        QTest::keyClick(&view(), Qt::Key_Return);
        QCOMPARE(opened.size(), 1);
        QCOMPARE(opened[0][2].toUInt(), 2U);
        QCOMPARE(opened[0][3].toUInt(), 30U);
        find<QLineEdit>("siteFindFilter").setText("first");
        QTRY_COMPARE(note(), "4 places in 2 files; 2 shown");
        view().sortByColumn(FoundPlaces::Place, Qt::DescendingOrder);
        QCOMPARE(rows()[1], "  2:30|The first one, and one more");
        find<QLineEdit>("siteFindFilter").setText("none of it");
        QTRY_COMPARE(find<QLabel>("siteFindPlaceholder").text(), "No row matches the filter.");
    }

    void tickedPlaces_areReplacedAndTakenBack()
    {
        const auto before = folders->contents();
        search("one");
        QVERIFY(!find<QAbstractButton>("siteFindReplaceButton").isEnabled());
        replaceBy("<1>");
        const QAbstractItemModelTester tester(view().model());
        view().setCurrentIndex(view().model()->index(0, 0, view().model()->index(0, 0)));
        QTest::keyClick(&view(), Qt::Key_Space);
        QCOMPARE(rows().first(4), (QStringList{"~a/x.html|2 places|", "  -1:18|Someone's one|<1>",
                                               "  +1:24|Someone's one|<1>", "+index.html|2 places|"}));
        QCOMPARE(note(), "4 places in 2 files; 3 ticked in 2 files");
        test::saveScreenshots(*panel(), "find-in-site");
        panel()->resize(700, 420);
        test::saveScreenshots(*panel(), "find-in-site-narrow");
        find<QAbstractButton>("siteFindReplaceButton").click();
        QTRY_COMPARE(folders->bytesOf("sending/a/x.html"),
                     std::string("<p title=one>Someone's &lt;1&gt;</p>"));
        QTRY_COMPARE(note(), "1 place in 1 file; 1 ticked in 1 file");
        QCOMPARE(folders->bytesOf("sending/index.html"),
                 std::string("<title>one</title>\n<p>The first <b>&lt;1&gt;</b>, and &lt;1&gt; more"));
        QTRY_VERIFY(site->isDone());
        QCOMPARE(site->status(), "Replace \"one\" by \"<1>\"; 3 places in 2 files changed");
        auto& undo = *site->window->findChild<QAction*>("undoMoveAction");
        QCOMPARE(undo.text(), "&Undo Replace");
        undo.trigger();
        QTRY_COMPARE(folders->contents(), before);
        QTRY_COMPARE(note(), "4 places in 2 files; 4 ticked in 2 files");
    }

    // The user hears of them first.
    void filesChangedSince_areLeftAlone()
    {
        search("one");
        replaceBy("two");
        folders->put("sending/index.html", "<p>Another one");
        find<QAbstractButton>("siteFindReplaceButton").click();
        const auto preview = [this] { return site->window->findChild<QDialog*>("planPreview"); };
        QTRY_VERIFY(preview());
        QCOMPARE(preview()->findChild<QLabel*>("planWarningText")->text(),
                 "Can't be changed or read: index.html. If you go on, they stay as they are.");
        QCOMPARE(preview()->findChild<QPushButton*>("planAcceptButton")->text(), "&Replace Anyway");
        test::saveScreenshots(*preview(), "replace-warning");
        preview()->accept();
        QTRY_COMPARE(folders->bytesOf("sending/a/x.html"), std::string("<p title=one>Sometwo's two</p>"));
        QTRY_VERIFY(site->isDone());
        QCOMPARE(folders->bytesOf("sending/index.html"), std::string("<p>Another one"));
        QVERIFY(site->log().contains("index.html: has changed since, left as it is"));
    }
};

LUMA_TEST(tst_sitefindpanel)
#include "tst_sitefindpanel.moc"
