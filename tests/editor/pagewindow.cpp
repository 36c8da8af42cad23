// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"

#include "base/files.h"
#include "web/scriptquote.h"

#include <QTest>

namespace luma::test {

namespace fs = std::filesystem;

namespace {

QString selectionScript(const char* text, const char* start)
{
    return QStringLiteral("(function (text) {"
                          "  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);"
                          "  for (let node; (node = walker.nextNode());) {"
                          "    const at = node.data.indexOf(text);"
                          "    if (at < 0) continue;"
                          "    const end = at + text.length;"
                          "    getSelection().setBaseAndExtent(node, %1, node, end);"
                          "    return 'found';"
                          "  }"
                          "})('%2')")
        .arg(QLatin1String(start), quotedForScript(QString::fromUtf8(text)));
}

} // namespace

PageWindow::~PageWindow()
{
    close();
}

void PageWindow::close()
{
    delete window;
}

fs::path PageWindow::at(const char* name) const
{
    return fs::path(m_folder.path().toStdString()) / name;
}

void PageWindow::put(const char* name, std::string_view bytes) const
{
    fs::create_directories(at(name).parent_path());
    QVERIFY(writeFile(at(name), bytes));
}

std::string PageWindow::file(const char* name) const
{
    const auto bytes = readFile(at(name));
    return bytes ? *bytes : std::string();
}

bool PageWindow::open(std::string_view markup)
{
    put("page.html", markup);
    return open(at("page.html"), at(""));
}

bool PageWindow::open(const fs::path& file, const fs::path& site)
{
    close();
    window = new HTMLDocument({runTidyCommand, {}});
    window->mountPath = site;
    window->readFromURL(file);
    window->show();
    window->activateWindow();
    window->windowDidLoad();
    return waitUntilShown() && waitForFocus();
}

bool PageWindow::waitForFocus() const
{
    const auto hasFocus = [this] {
        rendering().webView()->setFocus();
        return answer("document.hasFocus()") == QStringLiteral("true");
    };
    [&] { QTRY_VERIFY(hasFocus()); }();
    return hasFocus();
}

bool PageWindow::waitUntilShown() const
{
    [this] { QTRY_VERIFY_WITH_TIMEOUT(page().isComplete(), 60'000); }();
    return page().isComplete();
}

void PageWindow::trigger(const char* action) const
{
    the<QAction>(action)->trigger();
}

QString PageWindow::answer(const QString& script) const
{
    return rendering().evaluateAndWait(script).toString();
}

void PageWindow::type(const QString& text) const
{
    QTest::keyClicks(rendering().webView()->focusProxy(), text);
}

void PageWindow::select(const char* text) const
{
    QCOMPARE(answer(selectionScript(text, "at")), QStringLiteral("found"));
}

void PageWindow::setCaretBehind(const char* text) const
{
    QCOMPARE(answer(selectionScript(text, "end")), QStringLiteral("found"));
}

QByteArray PageWindow::tree() const
{
    return QByteArray::fromStdString(window->tree().document()->outerHtml());
}

QByteArray PageWindow::body() const
{
    return QByteArray::fromStdString(window->tree().document()->body()->html());
}

} // namespace luma::test
