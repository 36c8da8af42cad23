// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"

#include "page/pagecommands.h"
#include "tests/support/patience.h"
#include "web/scriptcall.h"

#include <QAbstractButton>
#include <QMenu>
#include <QTest>

#include <csignal>

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

void PageWindow::open(std::string_view markup)
{
    put("page.html", markup);
    open(at("page.html"), at(""));
}

void PageWindow::open(const fs::path& file, const fs::path& site)
{
    openWindow(file, site);
    waitUntilShown();
    QTRY_VERIFY(window->isActiveWindow());
}

void PageWindow::openWindow(const fs::path& file, const fs::path& site)
{
    delete window;
    window = new HTMLDocument;
    window->mountPath = site;
    if (!file.empty())
        window->readFromURL(file);
    window->show();
    window->activateWindow();
    window->windowDidLoad();
}

void PageWindow::close()
{
    delete window;
    m_site = std::make_unique<Site>();
}

void PageWindow::waitUntilShown() const
{
    QTRY_VERIFY_WITH_TIMEOUT(isShown(), 60'000);
}

void PageWindow::trigger(const char* action) const
{
    the<QAction>(action)->trigger();
    if (window)
        rendering().catchUp();
}

void PageWindow::insertFirstTag() const
{
    auto* const menu = the<QMenu>("insertMenu");
    emit menu->aboutToShow();
    menu->actions().constFirst()->trigger();
    rendering().catchUp();
}

void PageWindow::answerQuestion(const char* name, const char* button) const
{
    QTRY_VERIFY(the<QMessageBox>(name));
    const QList<QAbstractButton*> buttons = the<QMessageBox>(name)->buttons();
    for (QAbstractButton* each : buttons) {
        if (each->text().remove(u'&') == QLatin1String(button))
            QTest::mouseClick(each, Qt::LeftButton);
    }
}

QModelIndex PageWindow::row(const char* text) const
{
    const QAbstractItemModel& model = *outline()->model();
    const QModelIndexList found = model.match(model.index(0, 0), Qt::DisplayRole, QString::fromUtf8(text), 1,
                                              Qt::MatchStartsWith | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.first();
}

void PageWindow::click(const char* text) const
{
    outline()->scrollTo(row(text));
    QTest::mouseClick(outline()->viewport(), Qt::LeftButton, {}, outline()->visualRect(row(text)).center());
}

QString PageWindow::answer(const QString& script) const
{
    return ScriptCall::wait(&page(), script).toString();
}

void PageWindow::focusPage() const
{
    rendering().webView()->setFocus();
    QTRY_VERIFY(rendering().webView()->focusProxy()->hasFocus());
    QTRY_COMPARE(answer("document.hasFocus()"), "true");
}

void PageWindow::select(const char* text) const
{
    focusPage();
    QCOMPARE(answer(selectionScript(text, "at")), "found");
}

void PageWindow::setCaretBehind(const char* text) const
{
    focusPage();
    QCOMPARE(answer(selectionScript(text, "end")), "found");
}

void PageWindow::type(const char* text) const
{
    QTest::keyClicks(rendering().webView()->focusProxy(), QString::fromUtf8(text));
}

void PageWindow::typeInto(const char* selector, const char* text) const
{
    focusPage();
    const QString script = "{ getSelection().selectAllChildren(document.querySelector('%1'));"
                           "  getSelection().collapseToEnd() }";
    (void)answer(script.arg(QLatin1String(selector)));
    type(text);
}

void PageWindow::killRenderer() const
{
    QTRY_VERIFY(page().renderProcessPid() > 0);
    QCOMPARE(::kill(static_cast<pid_t>(page().renderProcessPid()), SIGKILL), 0);
}

void PageWindow::replaceRenderer() const
{
    QTRY_VERIFY(page().renderProcessPid() > 0);
    const qint64 process = page().renderProcessPid();
    killRenderer();
    QTRY_VERIFY(page().renderProcessPid() != process);
    waitUntilShown();
}

QByteArray PageWindow::tree() const
{
    return QByteArray::fromStdString(window->tree().document()->outerHtml());
}

QByteArray PageWindow::body() const
{
    return QByteArray::fromStdString(window->tree().document()->body()->html());
}

void PageWindow::setTitle(const char* title) const
{
    PageCommands(window->tree(), *window->undoStack()).setTitle(QString::fromUtf8(title));
}

} // namespace luma::test
