// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"
#include "page/pagecommands.h"
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "web/viewcontroller.h"

#include <QMenu>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <csignal>
#include <fstream>
#include <sstream>

using namespace luma;
namespace fs = std::filesystem;

namespace {

/// The processes of the engine: all below this one, by the kernel's table.
std::vector<pid_t> childProcesses()
{
    std::vector<pid_t> found = {::getpid()};
    for (std::size_t i = 0; i < found.size(); ++i) {
        const std::string process = std::to_string(found[i]);
        std::error_code error;
        for (const auto& task : fs::directory_iterator("/proc/" + process + "/task", error)) {
            std::ifstream children(task.path() / "children");
            for (pid_t child = 0; children >> child;)
                found.push_back(child);
        }
    }
    found.erase(found.begin());
    return found;
}

} // namespace

/// Pages that want what they must not get, that lack what they need, or whose process is killed: each is
/// edited, saved and closed in the window as any other.
class tst_badpages final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    void changeTitle() const
    {
        setTitle("New");
        window->refreshAfterEdit();
        QTRY_COMPARE(answer("document.title"), "New");
        QTRY_VERIFY(isShown());
    }

private slots:
    void cleanup() { close(); }

    void hostilePage_isEditedAndSaved_data()
    {
        const test::Rows<QByteArray> row("markup");
        row("missing sheets", "<link rel=\"stylesheet\" href=\"no/such.css\">"
                              "<style>@import 'gone.css'; p { background: url(gone.png) }</style>");
        row("missing images",
            "<img src=\"gone.png\"><img src=\"../../gone.png\"><img src=\"\"><img src=\"%zz\">");
        row("missing host", "<img src=\"http://127.0.0.1:9/gone.png\"><link rel=\"stylesheet\" "
                            "href=\"http://127.0.0.1:9/gone.css\">");
        row("script", "<script>document.body.innerHTML = 'taken'</script>");
        row("handlers", "<img src=\"gone.png\" onerror=\"document.body.innerHTML = 'taken'\">"
                        "<div onkeydown=\"this.remove()\" onfocus=\"this.remove()\">own</div>");
        row("endless script", "<script>for (;;);</script>");
        row("dialogs", "<script>alert(1); confirm(2); prompt(3); print(); open('x.html')</script>");
        row("dialog on leaving",
            "<script>onbeforeunload = e => { e.preventDefault(); return e.returnValue = 'stay' "
            "}</script>");
        row("dialog element", "<dialog open=\"\">Stay</dialog>");
        row("redirect", "<script>location = 'other.html'; location.replace('other.html')</script>");
        row("refresh", "<meta http-equiv=\"refresh\" content=\"0;url=other.html\">");
        row("refresh of itself", "<meta http-equiv=\"refresh\" content=\"0\">");
        row("frame that breaks out", "<iframe src=\"top.html\"></iframe>");
        row("reads outside", "<iframe src=\"../outside.html\"></iframe><link rel=\"stylesheet\" "
                             "href=\"file:///etc/passwd\"><object data=\"../outside.html\"></object>");
        row("base", "<base href=\"file:///etc/\"><img src=\"passwd\">");
    }
    void hostilePage_isEditedAndSaved()
    {
        QFETCH(QByteArray, markup);
        put("other.html", "other");
        put("top.html", "<script>top.location = 'other.html'</script><a target=_top href=other.html>x</a>");
        open("<!DOCTYPE html><title>Old</title><body>" + markup.toStdString() + "<p>one</p>");
        const std::size_t elements = window->tree().document()->select("*").size();
        changeTitle();
        typeInto("p", " two");
        QTRY_VERIFY(row("<p> one two").isValid());
        trigger("saveAction");
        QVERIFY(!window->isWindowModified());
        QCOMPARE(window->tree().document()->select("*").size(), elements);
        for (const std::string& part : {std::string("<title>New</title>"), std::string("<p>one two</p>"),
                                        markup.left(markup.indexOf('>') + 1).toStdString()})
            QVERIFY2(file("page.html").find(part) != std::string::npos, file("page.html").c_str());
        QCOMPARE(file("other.html"), std::string("other"));
        window->close();
        QTRY_VERIFY(!window);
    }

    // What an edit brings back into the rendering must not come when the user already types there.
    void slowImage_doesNotMoveTheSelection()
    {
        QTcpServer server; // which never answers
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const std::string address = "http://127.0.0.1:" + std::to_string(server.serverPort()) + "/slow.png";
        open("<!DOCTYPE html><title>T</title><body><section><p>one</p></section><img src=" + address + ">");
        QTRY_VERIFY(server.hasPendingConnections());
        click("<section>");
        changeTitle();
        QTRY_COMPARE(answer("getSelection().toString()"), "one");
        typeInto("p", " two");
        QTRY_VERIFY(row("<p> one two").isValid());
        const auto isLoadedAfterRefusals = [&] {
            while (QTcpSocket* socket = server.nextPendingConnection())
                delete socket;
            return answer("document.readyState") == "complete";
        };
        QTRY_VERIFY(isLoadedAfterRefusals());
        typeInto("p", "!");
        QTRY_VERIFY(row("<p> one two!").isValid());
        QCOMPARE(answer("getSelection().isCollapsed"), "true");
    }

    void killedProcess_losesNoEdit()
    {
        open("<title>T</title><p>one</p>");
        changeTitle();
        typeInto("p", " two");
        QTRY_VERIFY(row("<p> one two").isValid());
        replaceRenderer();
        QCOMPARE(answer("document.title + ' ' + document.querySelector('p').textContent"), "New one two");
        QVERIFY(window->isWindowModified());
        typeInto("p", "!");
        QTRY_VERIFY(row("<p> one two!").isValid());
        // What was typed is one step or two, depending on the pause between.
        while (row("<p> one two").isValid())
            trigger("undoAction");
        QVERIFY(row("<p> one").isValid());
        QVERIFY(row("<title> New").isValid());
    }

    void processKilledDuringAnEdit_keepsTheEdit()
    {
        open("<title>T</title><section><p>one</p></section>");
        click("<section>");
        killRenderer();
        insertFirstTag();
        killRenderer();
        QTRY_VERIFY(row("<article>").isValid());
        trigger("saveAction");
        QVERIFY(file("page.html").find("<article>") != std::string::npos);
        QTRY_VERIFY(isShown() && answer("document.querySelectorAll('article').length") == "1");
    }

    void processThatKeepsDying_isShownAgainOnDemand()
    {
        open("<title>T</title><p>one</p>");
        setTitle("New");
        for (int deaths = 0; deaths < 4; ++deaths) {
            waitUntilShown();
            const qint64 process = page().renderProcessPid();
            killRenderer();
            QTRY_VERIFY(page().renderProcessPid() != process);
        }
        QTRY_VERIFY(the<QWidget>("stoppedNotice"));
        trigger("saveAction");
        QVERIFY(file("page.html").find("New") != std::string::npos);
        QTest::mouseClick(the<QPushButton>("showAgainButton"), Qt::LeftButton);
        waitUntilShown();
        QCOMPARE(answer("document.title"), "New");
    }

    // Comes last: the engine has lost the process that starts its others, and no page comes back.
    void wholeEngineKilled_leavesTheWindow()
    {
        open("<title>T</title><section><p>one</p></section>");
        for (const pid_t process : childProcesses())
            ::kill(process, SIGKILL);
        setTitle("New");
        window->refreshAfterEdit();
        QTRY_VERIFY(row("<title> New").isValid());
        trigger("saveAction");
        QVERIFY(file("page.html").find("New") != std::string::npos);
        trigger("undoAction");
        QVERIFY(row("<title> T").isValid());
    }
};

LUMA_TEST(tst_badpages)
#include "tst_badpages.moc"
