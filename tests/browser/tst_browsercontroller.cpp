#include "browser/browser.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"

#include <QListView>
#include <QPushButton>
#include <QTest>

using namespace luma;
using luma::test::PaneFixture;

class tst_browsercontroller final : public QObject
{
    Q_OBJECT

private slots:
    void autoconnect_showsTheFolder()
    {
        PaneFixture site;
        site.pane->doConnect();
        QTRY_VERIFY(site.pane->rootNode());
        QCOMPARE(site.text("connectStateField"), QLatin1String("file://") + site.folder.path());
        QCOMPARE(site.find<QPushButton>("connectButton")->text(), QStringLiteral("Disconnect"));
        QCOMPARE(site.find<QListView>("browserList0")->model()->rowCount(), 3);
        PaneFixture::shoot(site.window, "pane-connected");
    }
};

LUMA_TEST(tst_browsercontroller)
#include "tst_browsercontroller.moc"
