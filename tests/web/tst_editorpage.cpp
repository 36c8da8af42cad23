// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/web/webfixture.h"
#include "web/scriptcall.h"

#include <QDesktopServices>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>

#include <csignal>

namespace fs = std::filesystem;
using namespace luma;
using luma::test::WebFixture;

namespace {

constexpr const char* sheet = "p { color: rgb(1, 2, 3) }";
const QString busy = "for (const end = Date.now() + 5000; Date.now() < end;); 1";
const QString coloured = "rgb(1, 2, 3)";

QByteArray pageWithSheet(const QByteArray& address)
{
    return "<!DOCTYPE html><link rel=stylesheet href=\"" + address + "\"><p>text</p>";
}

/// Receives the addresses that would be opened with the desktop's programs.
class Desktop final : public QObject
{
    Q_OBJECT

public:
    Desktop()
    {
        for (const QString& scheme : schemes)
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Desktop() override
    {
        for (const QString& scheme : schemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }

    QList<QUrl> opened;

public slots:
    void open(const QUrl& url) { opened.append(url); }

private:
    const QStringList schemes = {"http", "https", "mailto", "file"};
};

} // namespace

/// The rendering of a page in the real engine: what it shows, what it may read and what it must not do.
class tst_editorpage final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<WebFixture> web;

    QString colour() { return web->answer("getComputedStyle(document.querySelector('p')).color"); }
    EditorPage& page() { return web->view.editorPage(); }

private slots:
    void init() { web = std::make_unique<WebFixture>(); }
    void cleanup() { web.reset(); }

    void sheet_isFoundAsOnDisk_data()
    {
        const test::Rows<QByteArray, QByteArray> row("file", "link");
        row("beside", "sub/main.css", "main.css");
        row("above", "css/main.css", "../css/main.css");
        row("from the site's root", "css/main.css", "/css/main.css");
        row("query", "sub/main.css", "main.css?v=2#x");
        row("blank", "sub/a b.css", "a b.css");
        row("signs", "sub/50%#1?.css", "50%25%231%3F.css");
        row("not ASCII", "sub/grün.css", "grün.css");
        row("not UTF-8", "sub/gr\xfcn.css", "gr%FCn.css");
        row("newline", "sub/a\nb.css", "a%0Ab.css");
        row("linked folder", "css/main.css", "../styles/main.css");
    }
    void sheet_isFoundAsOnDisk()
    {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, link);
        web->put(file.toStdString(), sheet);
        fs::create_symlink("css", web->at("styles"));
        QVERIFY(web->show(pageWithSheet(link), "sub/page.html"));
        QCOMPARE(colour(), coloured);
    }

    void page_withAnOddNameIsShown()
    {
        web->put("gr\xfc n#%41/main.css", sheet);
        QVERIFY(web->show(pageWithSheet("main.css"), "gr\xfc n#%41/p \xff?.html"));
        QCOMPARE(colour(), coloured);
    }

    void fileOutsideTheSite_isNotRead_data()
    {
        QTest::addColumn<QByteArray>("link");
        QTest::newRow("above the site") << QByteArray("../../outside.css");
        QTest::newRow("encoded") << QByteArray("%2e%2e/%2e%2e/outside.css");
        QTest::newRow("encoded slash") << QByteArray("..%2f..%2foutside.css");
        QTest::newRow("file link") << QByteArray("../link.css");
        QTest::newRow("folder link") << QByteArray("../up/outside.css");
        QTest::newRow("file scheme") << QByteArray("file://OUTSIDE/outside.css");
        QTest::newRow("whole path") << QByteArray("/:OUTSIDE/outside.css");
        QTest::newRow("folder") << QByteArray("../sub");
        QTest::newRow("pipe") << QByteArray("../pipe.css");
    }
    void fileOutsideTheSite_isNotRead()
    {
        QFETCH(QByteArray, link);
        web->put("../outside.css", sheet);
        web->put("sub/x.css", "");
        fs::create_symlink("../outside.css", web->at("link.css"));
        fs::create_symlink("..", web->at("up"));
        QCOMPARE(::mkfifo(web->at("pipe.css").c_str(), 0600), 0);
        link.replace("OUTSIDE", QByteArray::fromStdString(web->at("..").lexically_normal().native()));
        QVERIFY(web->show(pageWithSheet(link), "sub/page.html"));
        QCOMPARE(colour(), "rgb(0, 0, 0)");
    }

    void pageOutsideItsSite_readsItsOwnFolder()
    {
        web->put("own/main.css", sheet);
        web->put("own/page.html", "");
        const SiteFolder files(web->at("own/page.html"), "/nowhere/at/all");
        QCOMPARE(files.folder(), web->at("own"));
        QSignalSpy shown(&page(), &EditorPage::shown);
        page().show(pageWithSheet("main.css"), files);
        QVERIFY(shown.wait());
        QCOMPARE(colour(), coloured);
    }

    void bigPage_comesWholeAndAsUtf8()
    {
        const QByteArray text =
            "<meta charset=iso-8859-1><p>" + QByteArray("Grüße ").repeated(400'000) + "</p>";
        QVERIFY(web->showBody(text));
        QCOMPARE(web->answer("document.querySelector('p').textContent.length"), "2400000");
        QCOMPARE(web->answer("document.querySelector('p').textContent.slice(0, 6)"), "Grüße ");
    }

    void markup_carriesNothingOfTheEditor()
    {
        const QByteArray markup = "<html lang=\"en\"><head><title>t</title></head><body class=\"b\"><p>x</p>"
                                  "<noscript><b>n</b></noscript></body></html>";
        QVERIFY(web->show("<!DOCTYPE html>" + markup));
        web->select("x");
        QCOMPARE(web->answer("document.documentElement.outerHTML.toString()"), QString::fromUtf8(markup));
        QCOMPARE(web->answer("document.body.isContentEditable"), "true");
    }

    void typedLetter_isToldOnce()
    {
        QSignalSpy changed(&page().bridge(), &PageBridge::mutationObserver);
        QSignalSpy active(&page().bridge(), &PageBridge::activeElementHTML);
        QVERIFY(web->showBody("<p>one</p>\n<!-- c --><p class=x>two</p>"));
        web->select("two", WebFixture::Caret::End);
        QTRY_COMPARE(active.count(), 1);
        QCOMPARE(active.first().first().value<QList<int>>(), (QList<int>{1, 1}));
        web->type("s");
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(web->body(), "<p>one</p>\n<!-- c --><p class=\"x\">twos</p>");
        QCOMPARE(active.count(), 1);
    }

    void selectText_selectsRevealsAndIsNotToldBack()
    {
        QSignalSpy active(&page().bridge(), &PageBridge::activeElementHTML);
        QVERIFY(
            web->showBody("<p>first</p><div style='height:3000px'></div><h2 id=it>It <b>is</b></h2><hr>"));
        QCOMPARE(web->answer("selectText(document.querySelector('#it')); getSelection().toString()"),
                 "It is");
        QVERIFY(web->answer("document.body.scrollTop").toDouble() > 2000);
        QCOMPARE(web->answer("selectText(document.querySelector('hr')); getSelection().rangeCount"), "1");
        QCOMPARE(web->answer("selectText(document.querySelector('title')); selectText(null); 7"), "7");
        QCOMPARE(active.count(), 0);
        web->select("first");
        QTRY_COMPARE(active.count(), 1);
        QCOMPARE(active.first().first().value<QList<int>>(), (QList<int>{1, 0}));
    }

    void pageThatWantsMore_staysAsItIs_data()
    {
        QTest::addColumn<QByteArray>("markup");
        QTest::newRow("script") << QByteArray("<script>document.querySelector('p').remove()</script>");
        QTest::newRow("handler") << QByteArray("<img src=x onerror='document.querySelector(`p`).remove()'>");
        QTest::newRow("dialog") << QByteArray("<script>alert(1); confirm(2); prompt(3)</script>");
        QTest::newRow("redirect") << QByteArray("<script>location = 'other.html'</script>");
        QTest::newRow("refresh") << QByteArray("<meta http-equiv=refresh content='0;url=other.html'>");
        QTest::newRow("refresh of itself") << QByteArray("<meta http-equiv=refresh content=0>");
        QTest::newRow("remote refresh")
            << QByteArray("<meta http-equiv=refresh content='0;url=http://127.0.0.1:9/'>");
        QTest::newRow("frame that breaks out") << QByteArray("<iframe src=top.html></iframe>");
        QTest::newRow("mail") << QByteArray("<iframe src='mailto:a@example.org'></iframe>"
                                            "<meta http-equiv=refresh content='0;url=mailto:a@example.org'>");
        QTest::newRow("policy") << QByteArray(
            "<meta http-equiv=Content-Security-Policy content=\"default-src 'none'\">");
    }
    void pageThatWantsMore_staysAsItIs()
    {
        QFETCH(QByteArray, markup);
        const Desktop desktop;
        web->put("other.html", "other");
        web->put("top.html", "<base target=_top><meta http-equiv=refresh content='0;url=other.html'>"
                             "<script>top.location = 'other.html'</script>");
        QSignalSpy shown(&page(), &EditorPage::shown);
        QVERIFY(web->showBody(markup + "<p>stays</p>"));
        QCOMPARE(web->answer("document.querySelector('p').textContent"), "stays");
        // An immediate refresh would have begun by now; the engine's events are processed once more.
        QSignalSpy later(&web->view, &QObject::objectNameChanged);
        QTimer::singleShot(100, &web->view, [this] { web->view.setObjectName("later"); });
        QVERIFY(later.wait());
        QCOMPARE(web->answer("document.querySelector('p').textContent"), "stays");
        QVERIFY(page().url().path().endsWith(QLatin1String("/page.html")));
        QVERIFY(page().isComplete());
        QVERIFY(desktop.opened.isEmpty());
        QCOMPARE(shown.count(), 1);
    }

    void formAndWindow_areRefused()
    {
        QVERIFY(web->showBody("<form action=other.html><input name=a></form><p>stays</p>"));
        QCOMPARE(
            web->answer("document.forms[0].submit(); open('other.html'); alert(1); confirm(2) || prompt(3);"
                        "document.documentElement.requestFullscreen(); location.reload(); 8"),
            "8");
        QCOMPARE(web->answer("document.querySelector('p').textContent"), "stays");
        QVERIFY(page().url().path().endsWith(QLatin1String("/page.html")));
    }

    void linkClickedWithControl_goesToTheBrowser_data()
    {
        const test::Rows<QByteArray, QByteArray> row("link", "opened");
        row("remote", "https://example.org/a?b#c", "https://example.org/a?b#c");
        row("page of the site", "../other%20page.html#x", "file://SITE/other%20page.html#x");
        row("mail", "mailto:a@example.org", "mailto:a@example.org");
        row("gone", "gone.html", "");
        row("program", "../program", "");
        row("script", "javascript:alert(1)", "");
        row("file", "file:///etc/passwd", "");
        row("outside", "../../outside.css", "");
        row("engine's own", "chrome://crash", "");
        row("target", "https://example.org/\" target=\"_blank", "https://example.org/");
    }
    void linkClickedWithControl_goesToTheBrowser()
    {
        QFETCH(QByteArray, link);
        QFETCH(QByteArray, opened);
        web->put("other page.html", "other");
        web->put("../outside.css", "");
        web->put("program", "#!/bin/sh\n");
        fs::permissions(web->at("program"), fs::perms(0755));
        const Desktop desktop;
        const QList<QUrl>& urls = desktop.opened;
        QVERIFY(web->show("<!DOCTYPE html><body style='margin:0'><a style='font-size:80px' href=\"" + link +
                              "\">link</a>",
                          "sub/page.html"));
        QTest::mouseClick(web->view.focusProxy(), Qt::LeftButton, {}, QPoint(60, 50));
        QTRY_COMPARE(web->answer("getSelection().anchorNode ? getSelection().anchorNode.data : ''"), "link");
        QVERIFY(urls.isEmpty());
        QTest::mouseClick(web->view.focusProxy(), Qt::LeftButton, Qt::ControlModifier, QPoint(60, 50));
        opened.replace("SITE", QByteArray::fromStdString(web->at("").parent_path().native()));
        if (!opened.isEmpty())
            QTRY_COMPARE(urls.count(), 1);
        QCOMPARE(web->answer("document.querySelector('a').textContent"), "link");
        QCOMPARE(urls.isEmpty() ? QByteArray() : urls.first().toEncoded(), opened);
        QVERIFY(page().url().path().endsWith(QLatin1String("/page.html")));
    }

    void remoteFiles_onlyForTheLook()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        QByteArrayList asked;
        connect(&server, &QTcpServer::newConnection, &server, [&] {
            QTcpSocket* socket = server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [&asked, socket] {
                asked.append(socket->readAll());
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/css\r\nSet-Cookie: a=b; Path=/\r\n"
                              "Content-Length: 25\r\nConnection: close\r\n\r\n" +
                              QByteArray(sheet));
                socket->disconnectFromHost();
            });
        });
        const QByteArray base = "http://127.0.0.1:" + QByteArray::number(server.serverPort());
        QVERIFY(web->showBody("<link rel=stylesheet href='" + base + "/a.css'><script src='" + base +
                              "/b.js'></script><iframe src='" + base + "/c.html'></iframe><object data='" +
                              base + "/d'></object><link rel=preconnect href='" + base + "'><p>text</p>"));
        QTRY_COMPARE(colour(), coloured);
        QCOMPARE(asked.count(), 1);
        QVERIFY(asked.first().startsWith("GET /a.css"));
        QVERIFY(!asked.first().contains("luma"));
        QVERIFY(!asked.first().contains("Cookie"));
    }

    void wait_endsWhenTheProcessDies()
    {
        QVERIFY(web->showBody("<p>text</p>"));
        QSignalSpy died(&page(), &EditorPage::processDied);
        const auto pid = static_cast<pid_t>(page().renderProcessPid());
        QTimer::singleShot(0, this, [pid] { ::kill(pid, SIGKILL); });
        QVERIFY(!ScriptCall::wait(&page(), busy).isValid());
        QTRY_COMPARE(died.count(), 1);
        QVERIFY(!page().isComplete());
        QVERIFY(!ScriptCall::wait(&page(), "1").isValid());
        QVERIFY(web->showBody("<p>back</p>"));
        QCOMPARE(web->answer("document.querySelector('p').textContent"), "back");
    }

    void wait_endsWhenThePageGoes()
    {
        QVERIFY(web->showBody("<p>text</p>"));
        QTimer::singleShot(0, this, [this] { web.reset(); });
        QVERIFY(!ScriptCall::wait(&page(), busy).isValid());
        QVERIFY(!web);
    }

    void wait_mayBeNested()
    {
        QVERIFY(web->showBody("<p>text</p>"));
        QString inner;
        QTimer::singleShot(0, this, [&] { inner = web->answer("'inner'"); });
        const QString outer = web->answer("for (let end = Date.now() + 100; Date.now() < end;); 'outer'");
        QCOMPARE(outer, "outer");
        QTRY_COMPARE(inner, "inner");
    }

    void wait_isNotSwallowedByALoad()
    {
        QVERIFY(web->showBody("<p>text</p>"));
        for (int i = 0; i < 5; ++i) {
            page().show("<!DOCTYPE html><title>t</title>" + QByteArray("<p>x</p>").repeated(1000),
                        SiteFolder(web->at("page.html"), web->at("")));
            (void)ScriptCall::wait(&page(), "1");
        }
        QTRY_VERIFY_WITH_TIMEOUT(page().isComplete(), 60000);
        QCOMPARE(web->answer("1"), "1");
    }

    void bridge_ignoresWhatIsNoMessage()
    {
        PageBridge& bridge = page().bridge();
        QSignalSpy text(&bridge, &PageBridge::callbackText);
        QSignalSpy active(&bridge, &PageBridge::activeElementHTML);
        QSignalSpy changed(&bridge, &PageBridge::mutationObserver);
        QVERIFY(web->showBody("<p>text</p>"));
        QCOMPARE(web->answer("post('callback_text', {}); post('callback_text', 3); post('nothing', 'x');"
                             "post('activeElementHTML', 'x'); post('activeElementHTML', [-1]);"
                             "post('activeElementHTML', [0, 'a']); post('activeElementHTML', null);"
                             "post('mutationObserver', 'x'); post(); post('callback_text', 'good'); 1"),
                 "1");
        QTRY_COMPARE(text.count(), 1);
        QCOMPARE(text.first().first().toString(), "good");
        QCOMPARE(active.count() + changed.count(), 0);
    }

    void names_areThoseOfTheSheets()
    {
        web->put("a.css", "@import 'b.css'; .linked{} a[href='.no'] .x:not(.y)::before, #one .z{}"
                          "@media print { .printed {} } @layer l { .layered { .nested &, & .inner {} } }"
                          ".\\31 0\\% {} .caf\xc3\xa9 {} @supports (display:grid) { .sup {} }");
        web->put("b.css", ".imported {}");
        QVERIFY(web->show("<!DOCTYPE html><link rel=stylesheet href=a.css><style>.own, .own#two{}</style>"));
        QCOMPARE(
            web->answer("findAllDotClassNamesFromCSS().join(' ')"),
            QStringLiteral("10% café imported layered linked own printed sup x y z").split(u' ').join(u' '));
        QCOMPARE(web->answer("findAllIDNamesFromCSS().join(' ')"), "one two");
        QVERIFY(web->showBody("<p>"));
        QCOMPARE(
            web->answer("Array.isArray(findAllIDNamesFromCSS()) && findAllIDNamesFromCSS().length === 0"),
            "true");
    }
};

LUMA_TEST(tst_editorpage)
#include "tst_editorpage.moc"
