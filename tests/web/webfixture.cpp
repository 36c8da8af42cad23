// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/web/webfixture.h"

#include "tests/support/patience.h"
#include "web/scriptcall.h"

#include <QSignalSpy>
#include <QTest>

namespace fs = std::filesystem;

namespace luma::test {

WebFixture::WebFixture()
{
    view.resize(800, 600);
    view.show();
    view.activateWindow();
    (void)QTest::qWaitForWindowExposed(&view);
}

bool WebFixture::show(const QByteArray& markup, const std::string& name)
{
    fs::create_directories(at(name).parent_path());
    QSignalSpy shown(&view.editorPage(), &EditorPage::shown);
    view.editorPage().show(markup, SiteFolder(at(name), at("")));
    view.setFocus();
    return shown.wait(patience);
}

bool WebFixture::showBody(const QByteArray& body)
{
    return show("<!DOCTYPE html><html><head><title>t</title></head><body>" + body + "</body></html>");
}

const QString WebFixture::setMarks = QStringLiteral(R"(
(function () {
    function take(mark) {
        const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
        for (let node; (node = walker.nextNode());) {
            const offset = node.data.indexOf(mark);
            if (offset < 0)
                continue;
            node.deleteData(offset, 1);
            if (node.length > 0)
                return [node, offset];
            const place = [node.parentNode, [...node.parentNode.childNodes].indexOf(node)];
            node.remove();
            return place;
        }
        return null;
    }
    const start = take('|') || take('[');
    const end = take(']') || start;
    if (start)
        getSelection().setBaseAndExtent(...start, ...end);
})())");

bool WebFixture::showMarked(const QByteArray& body)
{
    if (!showBody(body))
        return false;
    (void)answer(setMarks);
    return true;
}

QString WebFixture::answer(const QString& script)
{
    return ScriptCall::wait(&view.editorPage(), script).toString();
}

QString WebFixture::body()
{
    return answer("document.body.innerHTML");
}

void WebFixture::select(const QString& text, Caret caret)
{
    const QString script =
        "(function (text, caret) {"
        "  const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);"
        "  const selection = getSelection();"
        "  if (!text) {"
        "    const empty = [...document.body.querySelectorAll('*')].find((e) => !e.textContent);"
        "    return selection.collapse(empty, 0);"
        "  }"
        "  for (let node; (node = walker.nextNode());) {"
        "    const at = node.data.indexOf(text);"
        "    if (at < 0) continue;"
        "    const end = at + text.length;"
        "    return selection.setBaseAndExtent(node, caret === 'End' ? end : at,"
        "                                      node, caret === 'Start' ? at : end);"
        "  }"
        "})";
    const char* names[] = {"Start", "End", "Whole"};
    (void)answer(script + QStringLiteral("('%1', '%2')")
                              .arg(quotedForScript(text), QLatin1String(names[static_cast<int>(caret)])));
}

// Keys reach the page on a path of their own, so no other answer shows that they have arrived.
void WebFixture::waitForKeys(qsizetype count)
{
    QVERIFY(QTest::qWaitFor([this, count] { return answer("window.releasedKeys").toLongLong() >= count; },
                            patience));
}

void WebFixture::countKeys()
{
    (void)answer("if (!('releasedKeys' in window)) addEventListener('keyup', () => ++releasedKeys, true);"
                 "window.releasedKeys = 0");
}

void WebFixture::press(int key, Qt::KeyboardModifiers modifiers)
{
    countKeys();
    QTest::keyClick(view.focusProxy(), static_cast<Qt::Key>(key), modifiers);
    waitForKeys(1);
}

void WebFixture::type(const QString& text)
{
    countKeys();
    QTest::keyClicks(view.focusProxy(), text);
    waitForKeys(text.size());
}

} // namespace luma::test
