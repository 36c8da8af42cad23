// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/documentfixture.h"

#include "base/files.h"
#include "html/element.h"
#include "page/tidyshell.h"
#include "web/viewcontroller.h"

#include <QAbstractButton>
#include <QAction>
#include <QTest>

namespace luma::test {

namespace fs = std::filesystem;

void DocumentFixture::end()
{
    delete window;
    folder.reset();
}

fs::path DocumentFixture::at(const std::string& name) const
{
    return fs::path(folder->path().toStdString()) / name;
}

void DocumentFixture::put(const std::string& name, std::string_view bytes) const
{
    fs::create_directories(at(name).parent_path());
    QVERIFY(writeFile(at(name), bytes));
}

std::string DocumentFixture::file(const std::string& name) const
{
    const auto bytes = readFile(at(name));
    return bytes ? *bytes : std::string();
}

void DocumentFixture::openUntitled()
{
    window = new HTMLDocument({runTidyCommand, {}});
    window->mountPath = at("");
    window->show();
    window->activateWindow();
    window->windowDidLoad();
}

void DocumentFixture::openWindow(const char* name)
{
    window = new HTMLDocument({runTidyCommand, {}});
    window->mountPath = at("");
    window->readFromURL(at(name));
    window->show();
    window->activateWindow();
    window->windowDidLoad();
}

void DocumentFixture::open(std::string_view page)
{
    put("page.html", page);
    openWindow("page.html");
    QTRY_VERIFY_WITH_TIMEOUT(isShown(), 30'000);
    QTRY_VERIFY(window->isActiveWindow());
}

void DocumentFixture::trigger(const char* action) const
{
    the<QAction>(action)->trigger();
}

bool DocumentFixture::isShown() const
{
    return window->viewController().webView()->editorPage().isComplete();
}

QModelIndex DocumentFixture::row(const char* text) const
{
    const QAbstractItemModel& model = *outline()->model();
    const QModelIndexList found = model.match(model.index(0, 0), Qt::DisplayRole, QString::fromUtf8(text), 1,
                                              Qt::MatchStartsWith | Qt::MatchRecursive);
    return found.isEmpty() ? QModelIndex() : found.first();
}

void DocumentFixture::click(const char* text) const
{
    outline()->scrollTo(row(text));
    QTest::mouseClick(outline()->viewport(), Qt::LeftButton, {}, outline()->visualRect(row(text)).center());
}

QString DocumentFixture::answer(const char* script) const
{
    return window->viewController().evaluateAndWait(QString::fromUtf8(script)).toString();
}

void DocumentFixture::type(const char* selector, const char* text) const
{
    MyWebView& view = *window->viewController().webView();
    view.setFocus();
    QTRY_VERIFY(view.focusProxy()->hasFocus());
    QTRY_COMPARE(answer("document.hasFocus()"), QStringLiteral("true"));
    const QString script = QStringLiteral("const typedInto = document.querySelector('%1');"
                                          "getSelection().selectAllChildren(typedInto);"
                                          "getSelection().collapseToEnd()");
    (void)window->viewController().evaluateAndWait(u'{' + script.arg(QLatin1String(selector)) + u'}');
    QTest::keyClicks(view.focusProxy(), QString::fromUtf8(text));
}

std::string DocumentFixture::body() const
{
    return window->tree().document()->body()->html();
}

void DocumentFixture::answerQuestion(const char* name, QMessageBox::StandardButton button) const
{
    QTRY_VERIFY(the<QMessageBox>(name));
    QTest::mouseClick(the<QMessageBox>(name)->button(button), Qt::LeftButton);
}

void DocumentFixture::answerQuestion(const char* name, const char* button) const
{
    QTRY_VERIFY(the<QMessageBox>(name));
    const QList<QAbstractButton*> buttons = the<QMessageBox>(name)->buttons();
    for (QAbstractButton* each : buttons) {
        if (each->text() == QLatin1String(button))
            QTest::mouseClick(each, Qt::LeftButton);
    }
}

} // namespace luma::test
