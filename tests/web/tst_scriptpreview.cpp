// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/screenshot.h"
#include "tests/support/site.h"
#include "web/previewpage.h"
#include "web/scriptpreview.h"

#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QTcpServer>
#include <QTest>
#include <QUdpSocket>

#include <filesystem>

using namespace luma;
namespace fs = std::filesystem;

/// The preview with scripts: what a page can do there, and above all what it can't.
class tst_scriptpreview final : public QObject
{
    Q_OBJECT

private:
    void open(const QByteArray& markup)
    {
        m_preview = new ScriptPreview(page(markup));
        m_preview->show();
    }
    [[nodiscard]] PreviewSource page(const QByteArray& markup) const
    {
        return {markup,
                SiteFolder(m_site->at("site/page.html"), m_site->at("site")),
                m_drafts,
                {"index.html", "page.html"},
                m_pages};
    }
    [[nodiscard]] QString title() const { return m_preview->page().title(); }
    [[nodiscard]] QString listed() const
    {
        QStringList lines;
        const auto* const list = m_preview->findChild<QListWidget*>("previewMessages");
        for (int i = 0; i < list->count(); ++i)
            lines.append(list->item(i)->text());
        return lines.join(u'\n');
    }
    [[nodiscard]] QString state() const { return m_preview->findChild<QLabel*>("previewState")->text(); }
    [[nodiscard]] QByteArray serverAddress() const
    {
        return "127.0.0.1:" + QByteArray::number(m_server->serverPort());
    }

    std::unique_ptr<test::Site> m_site;
    std::unique_ptr<QTcpServer> m_server;
    int m_connections = 0;
    QUdpSocket m_datagrams;
    QHash<QString, QByteArray> m_drafts; // of style sheets, by file
    QHash<QString, QByteArray> m_pages;  // others
    QPointer<ScriptPreview> m_preview;

private slots:
    void init()
    {
        m_site = std::make_unique<test::Site>();
        m_site->put("secret.txt", "secret");
        m_site->put("site/data.txt", "data");
        m_site->put("site/page.html", "<title>as saved</title>");
        m_site->put("site/main.js", "document.title = 'ran'");
        fs::create_symlink(m_site->at("secret.txt"), m_site->at("site/link.txt"));
        m_site->put("site/folder %/index.html",
                    "<title>index</title><base target=_self><script src=main.js></script>");
        m_site->put("site/folder %/main.js",
                    "document.title = 'in the folder: ' + location.pathname.split('/site').pop()");
        m_site->put("site/\u00fc%.css", "body { width: 66px }");
        m_drafts = {{QString::fromStdString(m_site->at("site/\u00fc%.css").string()), "body { width: 77px }"},
                    {QString::fromStdString(m_site->at("secret.txt").string()), "secret draft"}};
        m_site->put("site/other/index.html", "<title>other, as saved</title>");
        m_pages = {{QString::fromStdString(m_site->at("site/other/index.html").string()),
                    "<title>other, unsaved</title>"},
                   {QString::fromStdString(m_site->at("secret.txt").string()), "secret page"},
                   {QString::fromStdString(m_site->at("site/page.html").string()), "<title>stale"}};
        m_connections = 0;
        m_server = std::make_unique<QTcpServer>();
        connect(m_server.get(), &QTcpServer::newConnection, this, [this] { ++m_connections; });
        QVERIFY(m_server->listen(QHostAddress::LocalHost));
        m_datagrams.close();
        QVERIFY(m_datagrams.bind(QHostAddress::LocalHost));
    }
    void cleanup()
    {
        delete m_preview;
        m_server.reset();
    }

    void scripts_runWithTheFilesOfTheSite_data()
    {
        const test::Rows<QByteArray, QString> row("script", "title");
        row("linked", "</script><script src=main.js></script><script>", "ran");
        row("fetched", "fetch('data.txt').then((r) => r.text()).then((t) => { document.title = t })", "data");
        row("not there", "fetch('nothing.txt').then((r) => { document.title = r.status })", "404");
        row("module", "</script><script type=module>import './main.js'</script><script>", "ran");
        row("a sheet that isn't saved",
            "</script><link rel=stylesheet href=%C3%BC%25.css><script>"
            "addEventListener('load', () => { document.title = getComputedStyle(document.body).width })",
            "77px");
        row("link to a folder", "location.replace('folder%20%25?x')", "in the folder: /folder%20%25/");
        row("link to the page's folder",
            "if (location.hash) document.title = 'again';"
            "else location.replace('./#x')",
            "again");
        row("another page that isn't saved", "location = 'other/index.html'", "other, unsaved");
        row("link to its folder", "location = 'other'", "other, unsaved");
        row("kept for the session", "localStorage.x = 'kept'; document.title = localStorage.x", "kept");
    }
    void scripts_runWithTheFilesOfTheSite()
    {
        QFETCH(QByteArray, script);
        open("<title>before</title><body><script>" + script + "</script>");
        QFETCH(QString, title);
        QTRY_VERIFY2(this->title() == title, qPrintable(this->title() + u'\n' + listed()));
        QVERIFY(m_preview->windowTitle().startsWith(title));
    }

    void hostilePages_getNothing_data()
    {
        const test::Rows<QByteArray, QString> row("script", "listed");
        const auto get = [](const char* address) {
            return "fetch('" + QByteArray(address) +
                   "').then((r) => r.ok ? r.text() : 'no').then(tell, () => tell('no'))";
        };
        const auto request = [](const char* address) {
            return "const x = new XMLHttpRequest(); x.onload = () => tell(x.responseText);"
                   "x.onerror = () => tell('no'); x.open('GET', '" +
                   QByteArray(address) + "'); x.send()";
        };
        row("file by fetch", get("file:///etc/passwd"), "file:///etc/passwd");
        row("file by request", request("file:///etc/passwd"), "file:///etc/passwd");
        row("file in a frame", "frame('file:///etc/passwd')", "file:///etc/passwd");
        row("above the site", get("../secret.txt"), "secret.txt");
        row("above the site, escaped", get("%2e%2e/secret.txt"), "secret.txt");
        row("slash, escaped", get("..%2fsecret.txt"), "secret.txt");
        row("through a link", get("link.txt"), "link.txt");
        row("another page's host", request("luma://page1/:/etc/passwd"), "");
        row("the network", get("http://HOST/x"), "http://HOST/x");
        row("a picture",
            "const i = new Image; i.onload = i.onerror = (e) => tell(e.type); i.src = 'http://HOST/i.png'",
            "http://HOST/i.png");
        row("a beacon", "navigator.sendBeacon('http://HOST/b', 'x'); tell('no')", "http://HOST/b");
        row("a socket", "const w = new WebSocket('ws://HOST/'); w.onerror = () => tell('no')", "ws://HOST/");
        row("going away", "location = 'http://HOST/away'; tell('no')", "http://HOST/away");
        row("a form",
            "document.body.innerHTML = '<form action=http://HOST/f></form>';"
            "document.forms[0].submit(); tell('no')",
            "http://HOST/f");
        row("a window", "tell(String(window.open('http://HOST/w')))", "");
        row("a worker",
            "const w = new Worker(URL.createObjectURL(new Blob([\"const x = new XMLHttpRequest();"
            "x.onerror = () => postMessage('no'); x.onload = () => postMessage(x.responseText);"
            "x.open('GET', 'http://HOST/k'); x.send()\"]))); w.onmessage = (e) => tell(e.data)",
            "http://HOST/k");
        row("a shared worker",
            "const w = new SharedWorker(URL.createObjectURL(new Blob([\"onconnect = (e) => {"
            "const s = new EventSource('http://HOST/s'); s.onerror = () => e.ports[0].postMessage('no') }\"])));"
            "w.port.onmessage = (e) => tell(e.data)",
            "http://HOST/s");
        row("a service worker", "tell(navigator.serviceWorker ? 'yes' : 'no')", "");
        row("hints",
            "document.head.innerHTML += '<link rel=preconnect href=http://HOST/><link rel=prefetch href=http://HOST/p>"
            "<link rel=dns-prefetch href=http://HOST/>"
            "<link rel=prerender href=http://HOST/r><link rel=modulepreload href=http://HOST/m>';"
            "setTimeout(() => tell('no'), 300)",
            "http://HOST/m");
        row("styles",
            "document.head.innerHTML += '<style>@import \"http://HOST/c\"; @font-face { font-family: x; src: url(http://HOST/f) }"
            "body { font-family: x; background: url(http://HOST/b) }</style>'; setTimeout(() => tell('no'), 300)",
            "http://HOST/b");
        row("a download",
            "const a = document.createElement('a'); a.download = 'x'; a.href = 'data:text/plain,x'; a.click(); tell('no')",
            "data:text/plain,x");
        row("the engine's own files", request("qrc:/qtwebchannel/qwebchannel.js"), "qrc:/");
        row("a file by XSLT",
            "const x = new XSLTProcessor, parse = (text) => new DOMParser().parseFromString(text, 'text/xml');"
            "x.importStylesheet(parse(`<s:stylesheet version=\"1.0\" xmlns:s=\"http://www.w3.org/1999/XSL/Transform\">"
            "<s:template match=\"/\"><a><s:copy-of select=\"document('file:///etc/passwd')\"/></a></s:template></s:stylesheet>`));"
            "tell(x.transformToDocument(parse('<a/>')).documentElement.outerHTML)",
            "");
        row("writing a file of the site",
            "const x = new XMLHttpRequest; x.onload = () => tell('yes'); x.onerror = () => tell('no');"
            "x.open('PUT', 'data.txt'); x.send('x')",
            "data.txt");
        row("the clipboard", "tell(navigator.clipboard ? 'yes' : String(document.execCommand('paste')))", "");
        row("a call", "tell(typeof RTCPeerConnection)", "");
        const auto call = [](const QByteArray& frame, const QByteArray& servers) {
            return "const f = document.createElement('iframe'); " + frame +
                   "; document.body.append(f);"
                   "try { const call = new f.contentWindow.RTCPeerConnection({ iceServers: [" +
                   servers +
                   "] });"
                   "  call.onicegatheringstatechange = () => { if (call.iceGatheringState === 'complete') tell('no') };"
                   "  call.createDataChannel('x');"
                   "  call.createOffer().then((offer) => call.setLocalDescription(offer));"
                   "} catch (error) { tell('no ' + error) }";
        };
        // Where scripts reach a frame's document before any other script can run in it, WebRTC is there.
        const QByteArray secrets = "', username: 'x', credential: 'x' }, ";
        QByteArray servers = "{ urls: 'stun:UDP' }, { urls: 'turn:UDP" + secrets;
        for (const char* server : {"turn:HOST", "turns:HOST", "turn:NAME", "turns:NAME"})
            servers += "{ urls: '" + QByteArray(server) + "?transport=tcp" + secrets;
        row("a call from an empty frame", call("", servers), "");
        row("a call from a blank frame", call("f.src = 'about:blank'", servers), "");
        row("a call from a frame of its own", call("f.srcdoc = 'x'", servers), "");
        row("a call from a frame that loads", call("f.src = 'data.txt'", servers), "");
        row("a call from a frame that never loads", call("f.src = 'mailto:x'", servers), "");
        row("a call to a candidate",
            "const f = document.createElement('iframe'); f.src = 'mailto:x'; document.body.append(f);"
            "(async () => {"
            "  const a = new f.contentWindow.RTCPeerConnection, b = new f.contentWindow.RTCPeerConnection;"
            "  setTimeout(() => tell('no ' + a.iceConnectionState), 2000);"
            "  a.createDataChannel('x'); await a.setLocalDescription(await a.createOffer());"
            "  await b.setRemoteDescription(a.localDescription);"
            "  await b.setLocalDescription(await b.createAnswer());"
            "  await a.setRemoteDescription(b.localDescription);"
            "  for (const host of ['127.0.0.1', 'localhost', 'x.local'])"
            "    await a.addIceCandidate({ sdpMid: '0', candidate: `candidate:1 1 tcp 1518280447 ${host} PORT typ host tcptype passive` });"
            "})().catch((error) => tell('no ' + error))",
            "");
        row("the place", "navigator.geolocation.getCurrentPosition(() => tell('yes'), () => tell('no'))", "");
    }
    void hostilePages_getNothing()
    {
        QFETCH(QByteArray, script);
        QFETCH(QString, listed);
        script.replace("HOST", serverAddress());
        script.replace("UDP", "127.0.0.1:" + QByteArray::number(m_datagrams.localPort()));
        script.replace("NAME", "localhost:" + QByteArray::number(m_server->serverPort()));
        script.replace("PORT", QByteArray::number(m_server->serverPort()));
        listed.replace("HOST", QString::fromLatin1(serverAddress()));
        open("<title>before</title><body><script>"
             "const tell = (text) => { document.title = 'told ' + text };"
             "const frame = (address) => { const f = document.createElement('iframe'); f.src = address;"
             "  document.body.append(f); setTimeout(() => { try { tell(f.contentDocument.body.textContent) }"
             "  catch { tell('no') } }, 300) };" +
             script + "</script>");
        QTRY_VERIFY2(title().startsWith("told"), qPrintable(title() + u'\n' + this->listed()));
        QVERIFY2(!title().contains("secret") && !title().contains("root:") && !title().contains("yes") &&
                     !title().contains("function") && !title().contains("load"),
                 qPrintable(title()));
        QTRY_VERIFY2(this->listed().contains(listed), qPrintable(this->listed()));
        QCOMPARE(m_connections, 0);
        QVERIFY(!m_datagrams.hasPendingDatagrams());
        QVERIFY(m_preview->page().url().scheme() == "luma");
    }

    // Those that a click asks for; the others the engine refuses by itself.
    void windows_areListed()
    {
        open(
            "<title>shown</title><a target=_blank href=http://x.invalid/w style='position: fixed; inset: 0'>a</a>");
        QTRY_COMPARE(title(), "shown");
        auto* const view = m_preview->findChild<QWidget*>("previewView");
        const auto click = [&] {
            QTest::mouseClick(view->focusProxy(), Qt::LeftButton, {}, QPoint(60, 60));
            return listed();
        };
        QTRY_VERIFY(click().contains("Window not opened: http://x.invalid/w"));
    }

    void dialogs_areListed()
    {
        open(
            "<title>before</title><script>alert('one'); document.title = confirm('two') + prompt('three', 'x')</script>");
        QTRY_COMPARE(title(), "truex");
        QTRY_COMPARE(listed(), "Dialog: one\nDialog: two\nDialog: three");
        m_preview->showPage(page("<script>\nnothing()</script>"));
        QTRY_COMPARE(listed(), "Error: line 2: Uncaught ReferenceError: nothing is not defined");
        const auto* const view = m_preview->findChild<QWidget*>("previewView");
        QTRY_VERIFY(!view->focusProxy()->accessibleName().isEmpty()); // at the end of the load
        test::saveScreenshots(*m_preview, "script-preview");
        m_preview->showPage(page("<title>fine</title>"));
        QTRY_VERIFY2(title() == "fine", qPrintable(title() + u' ' + listed() + u' ' + state()));
        QCOMPARE(listed(), "");
    }

    void endlessLoop_isToldAndStopped()
    {
        open("<title>loop</title><p>x</p><script>setTimeout(() => { for (;;); }, 200)</script>");
        QTRY_VERIFY2(state().contains("does not end"), qPrintable(state()));
        m_preview->stop();
        QTRY_VERIFY2(state().contains("were stopped"), qPrintable(state()));
        m_preview->showPage(page("<title>again</title><script>document.title = 'again and'</script>"));
        QTRY_COMPARE(title(), "again and");
        QVERIFY(!state().contains("stopped"));
        m_preview->showPage(page("<title>loop</title><script>for (;;);</script>"));
        m_preview->close();
        QTRY_VERIFY(!m_preview);
    }
};

LUMA_TEST(tst_scriptpreview)
#include "tst_scriptpreview.moc"
