// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browser.h"
#include "browser/browsercontroller.h"
#include "browser/endpoint.h"
#include "desktop/windowregistry.h"
#include "site/haldendoc.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "tests/support/unavailablemounter.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QSemaphore>
#include <QTest>

#include <atomic>

using namespace luma;
using luma::test::TwoFolders;

class tst_haldendoc final : public QObject
{
    Q_OBJECT

    std::unique_ptr<TwoFolders> m_folders;
    std::shared_ptr<SiteRecord> m_record;
    QPointer<HaldenDoc> m_window;
    QString m_checkAnswer;
    QString m_setUpAnswer;
    QStringList m_calls;
    QSemaphore m_shellMayAnswer;

    static QVariantMap endpointAt(const std::filesystem::path& folder, const QString& server)
    {
        return {{endpoint::protocol, QString(endpoint::fileProtocol)},
                {endpoint::server, server},
                {endpoint::path, QString::fromStdString(folder.string())},
                {endpoint::user, "anna"},
                {endpoint::password, "secret"},
                {endpoint::autoconnect, 1},
                {endpoint::sshPortNo, "22"}};
    }

    HaldenDoc::Services services()
    {
        return {{[this](const QString& login, const QString& port) {
                     onMainCall(QStringLiteral("check %1 %2").arg(login, port));
                     return m_checkAnswer;
                 },
                 [this](const QString& login, const QString& port, const QString& password) {
                     onMainCall(QStringLiteral("set up %1 %2 %3").arg(login, port, password));
                     return m_setUpAnswer;
                 }},
                [this](const std::vector<std::string>&) {
                    m_shellMayAnswer.acquire();
                    return std::string();
                },
                std::make_shared<test::UnavailableMounter>(),
                {}};
    }

    void onMainCall(const QString& call)
    {
        QMetaObject::invokeMethod(this, [this, call] { m_calls += call; });
    }

    void open()
    {
        m_window = new HaldenDoc(m_record, services());
        m_window->windowDidLoad();
        QTRY_VERIFY(m_window->sourceBrowserController().rootNode());
        QTRY_VERIFY(m_window->destinationBrowserController().rootNode());
    }

    template <class Widget>
    Widget* find(const char* name) const
    {
        return m_window->findChild<Widget*>(QLatin1StringView(name));
    }

    void click(const char* name) const { QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton); }

private slots:
    void init()
    {
        m_folders = std::make_unique<TwoFolders>();
        m_record = std::make_shared<SiteRecord>(
            QVariantMap{{"sourceDict", endpointAt(m_folders->sending(), "localhost")},
                        {"destinationDict", endpointAt(m_folders->receiving(), "web.example")}});
        m_calls.clear();
        m_checkAnswer.clear();
        m_setUpAnswer.clear();
    }

    void cleanup()
    {
        if (m_window)
            m_window->close();
        QTRY_VERIFY(!m_window);
    }

    void oddRecord_opensAndIsKeptAsItIs_data()
    {
        const QVariantMap connecting{{endpoint::autoconnect, 1}};
        const QVariantMap mistyped{{endpoint::protocol, 7},           {endpoint::server, QVariantList{1}},
                                   {endpoint::path, QByteArray("/")}, {endpoint::user, QVariantMap{}},
                                   {endpoint::autoconnect, "1"},      {endpoint::sshPortNo, 22}};
        QTest::addColumn<QVariantMap>("values");
        QTest::newRow("nothing") << QVariantMap{};
        QTest::newRow("no endpoints") << QVariantMap{{"sourceDict", 1}, {"destinationDict", QVariantList{}}};
        QTest::newRow("empty endpoints connect")
            << QVariantMap{{"sourceDict", connecting}, {"destinationDict", connecting}};
        QTest::newRow("wrong types") << QVariantMap{
            {"sourceDict", mistyped}, {"destinationDict", mistyped}, {"Upload", "a"}};
    }
    void oddRecord_opensAndIsKeptAsItIs()
    {
        QFETCH(QVariantMap, values);
        m_record = std::make_shared<SiteRecord>(values);
        const QVariantMap before = m_record->values();
        m_window = new HaldenDoc(m_record, services());
        m_window->windowDidLoad();
        click("uploadButton");
        QTRY_COMPARE(find<QLabel>("syncPanelTitle")->text(), "Nothing changed from Source to Destination");
        QTest::keyClick(find<QWidget>("syncPanel"), Qt::Key_Escape);
        m_window->setUpRsync();
        QTRY_COMPARE(m_calls.size(), 1);
        QVERIFY(!m_window->sourceBrowserController().rootNode());
        const QVariantMap after = m_record->values();
        QCOMPARE(after.value("sourceDict"), before.value("sourceDict"));
        QCOMPARE(after.value("destinationDict"), before.value("destinationDict"));
    }

    void title_isTheServerAndFollowsIt()
    {
        open();
        QCOMPARE(WindowRegistry::instance().windowTitled("web.example"), m_window.data());
        m_record->destinationDict()->setValue(endpoint::server, "other.example");
        QCOMPARE(m_window->windowTitle(), "other.example");
    }

    void connectionLine_followsCheckAndSetUp()
    {
        m_record->destinationDict()->setValue(endpoint::protocol, "sftp://");
        m_record->destinationDict()->setValue(endpoint::autoconnect, 0);
        m_window = new HaldenDoc(m_record, services());
        m_window->windowDidLoad();
        auto* text = find<QLabel>("connectionResultText");
        auto* button = find<QAbstractButton>("setUpRemoteLoginConnectionButton");
        m_checkAnswer = "fail - timeout";
        m_window->checkConnectionOK();
        QTRY_COMPARE(text->text(), "Turn on rsync to make uploads and downloads go faster.");
        QVERIFY(!m_window->rsync());

        m_setUpAnswer = "Permission denied, please try entering the password again.";
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_COMPARE(text->text(), m_setUpAnswer);
        QVERIFY(!m_window->rsync());
        QVERIFY(button->isEnabled());

        m_setUpAnswer.clear();
        m_checkAnswer.clear();
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_COMPARE(text->text(), "LUMA is using rsync for faster uploads and downloads.");
        QVERIFY(m_window->rsync());
        QVERIFY(!button->isEnabled());
        QCOMPARE(m_calls.last(), "check anna@web.example 22");
        QVERIFY(m_calls.contains("set up anna@web.example 22 secret"));
        luma::test::screenshot(*m_window, "site-rsync");
    }

    void closing_whileAJobRuns_data()
    {
        QTest::addColumn<bool>("rsync");
        QTest::newRow("file mode comparison") << false;
        QTest::newRow("rsync that does not answer") << true;
    }
    void closing_whileAJobRuns()
    {
        QFETCH(bool, rsync);
        for (int i = 0; i < 200; ++i)
            m_folders->put("sending/" + std::to_string(i % 20) + "/" + std::to_string(i));
        open();
        if (rsync) {
            m_window->checkConnectionOK();
            QTRY_VERIFY(m_window->rsync());
        }
        m_window->sync(Direction::Upload);
        m_window->close();
        QTRY_VERIFY(!m_window);
        m_shellMayAnswer.release();
        QVERIFY(std::filesystem::is_empty(m_folders->receiving()));
    }

    void layout_comesBack()
    {
        m_folders->put("sending/a/index.html");
        open();
        m_window->resize(900, 800);
        m_window->sourceBrowserController().browser().setColumnWidths({310, 150});
        m_window->destinationBrowserController().browser().setColumnWidths({99});
        const QByteArray state = m_window->layoutState();
        m_window->close();
        QTRY_VERIFY(!m_window);
        m_window = new HaldenDoc(m_record, services());
        m_window->restoreLayoutState(state);
        m_window->restoreLayoutState("nonsense");
        m_window->windowDidLoad();
        QCOMPARE(m_window->size(), QSize(900, 800));
        // A layout cut off or damaged anywhere does no harm.
        for (int size = 0; size < state.size(); ++size) {
            m_window->restoreLayoutState(state.left(size));
            QByteArray damaged = state;
            damaged[size] = static_cast<char>(~state[size]);
            m_window->restoreLayoutState(damaged);
        }
        m_window->restoreLayoutState(state);
        BrowserController& source = m_window->sourceBrowserController();
        QCOMPARE(source.browser().columnWidths(), (QList<int>{310, 150}));
        QCOMPARE(m_window->destinationBrowserController().browser().columnWidths(), QList<int>{99});
        QTRY_VERIFY(source.rootNode());
        source.browser().setPath({"a"});
        QCOMPARE(source.widget()->findChild<QWidget*>("browserColumn0")->width(), 310);
        QCOMPARE(source.widget()->findChild<QWidget*>("browserColumn1")->width(), 150);
    }

    void tab_reachesOnlyWhatHasAName_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("forwards") << Qt::Key_Tab;
        QTest::newRow("backwards") << Qt::Key_Backtab;
    }
    void tab_reachesOnlyWhatHasAName()
    {
        QFETCH(Qt::Key, key);
        m_folders->put("sending/index.html");
        open();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
        QSet<const QWidget*> stops;
        for (int i = 0; i < 40; ++i) {
            QTest::keyClick(m_window->focusWidget() ? m_window->focusWidget() : m_window.data(), key);
            QWidget* stop = QApplication::focusWidget();
            QVERIFY(stop);
            stops.insert(stop);
            const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(stop);
            QVERIFY2(
                accessible && !accessible->text(QAccessible::Name).isEmpty(),
                qPrintable(stop->objectName() + u' ' + QLatin1StringView(stop->metaObject()->className())));
        }
        // At least both panes' columns and buttons.
        QVERIFY(stops.size() >= 6);
    }
};

LUMA_TEST(tst_haldendoc)
#include "tst_haldendoc.moc"
