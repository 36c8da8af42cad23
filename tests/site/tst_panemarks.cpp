// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/site/sitewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

using namespace luma;
using luma::test::SiteWindow;
using luma::test::TwoFolders;

/// The marks in the columns of a real window.
class tst_panemarks final : public QObject
{
    Q_OBJECT

    // The items of a column that have a mark.
    static QStringList marks(const BrowserController& pane, int column)
    {
        QStringList texts;
        const QModelIndex folder = SiteWindow::list(pane, column).rootIndex();
        const FileSystemModel& model = pane.browser().model();
        for (int row = 0; row < model.rowCount(folder); ++row) {
            const QModelIndex item = model.index(row, 0, folder);
            const QString mark = item.data(Qt::AccessibleDescriptionRole).toString();
            if (!mark.isEmpty())
                texts.append(item.data().toString() + ": " + mark);
        }
        return texts;
    }

private slots:
    void marks_sayHowTheSidesDiffer()
    {
        const TwoFolders folders;
        for (const char* side : {"sending/", "receiving/"}) {
            const std::string at = side;
            const bool isSource = at == "sending/";
            folders.put(at + "same", "text", 100);
            folders.put(at + "newer-in-source", "text", isSource ? 50 : 100);
            folders.put(at + "newer-in-destination", "text", isSource ? 100 : 50);
            folders.put(at + "other-size", isSource ? "text" : "longer text", 100);
            folders.put(at + (isSource ? "only-in-source" : "only-in-destination"));
            folders.put(at + "folder/same");
            std::filesystem::create_symlink(isSource ? "same" : "folder", folders.at(at + "link"));
        }
        folders.put("sending/backup~");
        const SiteWindow site(folders);
        QTRY_COMPARE(
            marks(site.source(), 0),
            QStringList({"link: different on the other side", "newer-in-destination: newer on the other side",
                         "newer-in-source: newer on this side", "only-in-source: only on this side",
                         "other-size: different on the other side"}));
        QCOMPARE(
            marks(site.destination(), 0),
            QStringList({"link: different on the other side", "newer-in-destination: newer on this side",
                         "newer-in-source: newer on the other side", "only-in-destination: only on this side",
                         "other-size: different on the other side"}));
        test::saveScreenshots(*site.window, "marks");
    }

    void marks_followChanges()
    {
        const TwoFolders folders;
        folders.put("sending/a/new");
        folders.put("receiving/b");
        const SiteWindow site(folders);
        site.source().browser().setPath({"a"});
        QTRY_COMPARE(marks(site.source(), 1), QStringList("new: only on this side"));
        QCOMPARE(marks(site.source(), 0), QStringList("a: only on this side"));
        folders.put("receiving/a/new");
        folders.put("receiving/a/other");
        QTRY_COMPARE(marks(site.source(), 1), QStringList());
        QCOMPARE(marks(site.source(), 0), QStringList());
        site.destination().browser().setPath({"a"});
        QTRY_COMPARE(marks(site.destination(), 1), QStringList("other: only on this side"));
        site.source().disconnectPane();
        QTRY_COMPARE(marks(site.destination(), 1), QStringList());
    }
};

LUMA_TEST(tst_panemarks)
#include "tst_panemarks.moc"
