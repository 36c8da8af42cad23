// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/subtreechange.h"
#include "tests/support/registry.h"
#include "web/linksheet.h"
#include "web/pagedocument.h"
#include "web/scriptcall.h"
#include "web/sourcepanel.h"
#include "web/viewcontroller.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <csignal>

using namespace luma;

namespace {

/// A document that keeps its markup as text and records its calls.
class TextDocument final : public PageDocument
{
public:
    std::string pageMarkup() override { return markup; }
    SiteFolder siteFolder() const override { return {folder + "/page.html", folder}; }
    void setHTML(std::string_view html, const QString& name) override
    {
        markup = html;
        told.append(name);
    }
    bool takeChange(const SubtreeChange&, const QString&) override { return false; }
    std::uint32_t fingerprint() const override { return 0; }
    Source source() const override { return {markup, 0}; }
    std::optional<Refusal> setSource(const Source& source) override
    {
        setHTML(source.text, "Edit Source");
        return {};
    }
    void buildCSSMenu() override { told.append("css"); }
    void loadCSSNames() override { told.append("names"); }
    void applyCallbackText(const QString& text) override { told.append("text " + text); }
    void setActiveElement(const std::vector<int>& path) override
    {
        told.append(QStringLiteral("active %1").arg(path.size()));
    }
    void fitWindowToPage(int width) override { told.append(QStringLiteral("width %1").arg(width)); }
    QString linkTo(const std::filesystem::path& file) const override
    {
        return QString::fromStdString(file.lexically_relative(folder).native());
    }
    void undo() override { told.append("undo"); }
    void redo() override { told.append("redo"); }

    QTemporaryDir temporary;
    std::string folder = temporary.path().toStdString();
    std::string markup;
    QStringList told;
};

QPushButton* button(QDialog* sheet, const char* name)
{
    return sheet->findChild<QPushButton*>(QString::fromLatin1(name));
}

} // namespace

/// The controller with a real rendering and a recording document.
class tst_viewcontroller final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QWidget> window;
    std::unique_ptr<TextDocument> document;
    ViewController* controller = nullptr;
    QLabel* infoText = nullptr;

    bool show(const std::string& body)
    {
        document->markup = "<html><head></head><body>" + body + "</body></html>";
        QSignalSpy shown(&page(), &EditorPage::shown);
        controller->show(ViewController::Position::Start);
        bool done = shown.wait(patience);
        done = done && QTest::qWaitFor([this] { return !document->told.filter("width").isEmpty(); });
        document->told.clear();
        controller->webView()->setFocus();
        return done;
    }
    EditorPage& page() { return controller->webView()->editorPage(); }
    QString answer(const char* script)
    {
        return ScriptCall::wait(&page(), QString::fromLatin1(script)).toString();
    }

private slots:
    void init()
    {
        window = std::make_unique<QWidget>();
        document = std::make_unique<TextDocument>();
        infoText = new QLabel(window.get());
        auto* content = new QWidget(window.get());
        (new QVBoxLayout(window.get()))->addWidget(content);
        controller = new ViewController(*document, content, infoText);
        window->resize(700, 500);
        window->show();
        window->activateWindow();
    }
    void cleanup()
    {
        window.reset();
        document.reset();
    }

    void catchUp_leavesNoEditBehind()
    {
        QVERIFY(show("<p>one</p>"));
        controller->evaluate("document.querySelector('p').textContent = 'two'");
        controller->catchUp();
        QVERIFY(document->markup.find("<p>two</p>") != std::string::npos);
        QCOMPARE(document->markup.find("contenteditable"), std::string::npos);
        document->told.clear();
        controller->catchUp();
        QVERIFY(document->told.isEmpty());
    }

    // Continuations run in order and once, even if the page dies, but not for an object that is gone.
    void whenCaughtUp_runsWhateverThePageDoes_data()
    {
        QTest::addColumn<bool>("dies");
        QTest::newRow("living page") << false;
        QTest::newRow("dying page") << true;
    }
    void whenCaughtUp_runsWhateverThePageDoes()
    {
        QFETCH(bool, dies);
        QVERIFY(show("<p>one</p>"));
        controller->evaluate("document.querySelector('p').textContent = 'two'");
        const auto note = [this](const char* text) {
            return [this, text] { document->told.append(QString::fromLatin1(text)); };
        };
        auto gone = std::make_unique<QObject>();
        controller->whenCaughtUp(this, note("first"));
        controller->whenCaughtUp(gone.get(), note("gone"));
        controller->whenCaughtUp(this, note("last"));
        gone.reset();
        if (dies)
            ::kill(static_cast<pid_t>(page().renderProcessPid()), SIGKILL);
        QTRY_VERIFY(document->told.contains("last"));
        document->told.removeOne("Typing");
        QCOMPARE(document->told.mid(0, 2), (QStringList{"first", "last"}));
        QVERIFY(dies || document->markup.find("two") != std::string::npos);
        QTRY_VERIFY(page().isComplete() && !controller->webView()->heldInput().isHolding());
    }

    void reload_keepsScrollAndCaret()
    {
        QVERIFY(show("<p>one</p><div style='height: 5000px'></div><p id=it>two</p>"));
        (void)answer("getSelection().collapse(document.querySelector('#it').firstChild, 2);"
                     "document.body.scrollTop = 1234");
        QTRY_VERIFY(document->told.contains("active 2"));
        document->told.clear();
        QSignalSpy shown(&page(), &EditorPage::shown);
        controller->show(ViewController::Position::Keep);
        QVERIFY(shown.wait());
        QCOMPARE(answer("document.body.scrollTop"), "1234");
        QCOMPARE(answer("getSelection().focusNode.data + getSelection().focusOffset"), "two2");
        QTRY_VERIFY(document->told.contains("names"));
        QVERIFY(document->told.filter("width").count() >= 1);
        QVERIFY(document->told.filter("active").isEmpty());
    }

    void linkSheet_makesAndEditsLinks_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("plain") << "https://example.org/a?b=c&d";
        QTest::newRow("quotes") << "a'); document.body.remove(); ('";
        QTest::newRow("double quotes") << "a\" onclick=\"alert(1)";
        QTest::newRow("end of script") << "</script><script>alert(1)";
        QTest::newRow("backslash") << "a\\";
        QTest::newRow("other signs") << "gr\u00fcn\u2028\U0001F600";
    }
    void linkSheet_makesAndEditsLinks()
    {
        QFETCH(QString, address);
        QVERIFY(show("<p>one two</p>"));
        (void)answer("getSelection().setBaseAndExtent(document.querySelector('p').firstChild, 0,"
                     "document.querySelector('p').firstChild, 3)");
        controller->makeLink();
        auto* field = controller->linkSheet()->findChild<QLineEdit*>("linkAddress");
        QCOMPARE(field->text(), "http://");
        QVERIFY(!button(controller->linkSheet(), "linkButton")->isEnabled());
        field->setText("first.html");
        QCOMPARE(button(controller->linkSheet(), "linkButton")->text(), "Link");
        button(controller->linkSheet(), "linkButton")->click();
        controller->catchUp();
        QCOMPARE(answer("document.querySelector('a').outerHTML"), "<a href=\"first.html\">one</a>");
        controller->editLink();
        QTRY_COMPARE(button(controller->linkSheet(), "linkButton")->text(), "Edit Link");
        QCOMPARE(field->text(), "first.html");
        field->setText(address);
        button(controller->linkSheet(), "linkButton")->click();
        controller->catchUp();
        QCOMPARE(answer("document.querySelectorAll('a').length"), "1");
        QCOMPARE(answer("document.querySelector('a').getAttribute('href')"),
                 address.replace(u' ', u"%20"_qs));
        QCOMPARE(answer("document.querySelector('a').attributes.length"), "1");
    }

    void linkSheet_refusesScripts()
    {
        QVERIFY(show("<p>one</p>"));
        controller->makeLink();
        auto* field = controller->linkSheet()->findChild<QLineEdit*>("linkAddress");
        for (const char* address :
             {"javascript:alert(1)", " JavaScript :x", "data:text/html,x", "", "http://"}) {
            field->setText(QString::fromLatin1(address));
            QVERIFY2(!button(controller->linkSheet(), "linkButton")->isEnabled(), address);
        }
        field->setText("page.html?javascript:");
        QVERIFY(button(controller->linkSheet(), "linkButton")->isEnabled());
        button(controller->linkSheet(), "linkCancelButton")->click();
        QCOMPARE(answer("document.querySelectorAll('a').length"), "0");
        controller->insertImage();
        QCOMPARE(button(controller->linkSheet(), "linkButton")->text(), "IMG");
        QCOMPARE(field->text(), QString());
    }

    void sourcePanel_savesIntoTheDocument()
    {
        QVERIFY(show("<p>one</p>"));
        controller->showSource();
        auto* field = controller->sourcePanel()->findChild<QPlainTextEdit*>("sourceField");
        QPushButton* save = button(controller->sourcePanel(), "saveSourceButton");
        QTRY_VERIFY(field->toPlainText().contains("<p>one</p>"));
        QVERIFY(!save->isEnabled());
        field->setPlainText("<html><body><h1>New</h1></body></html>");
        QVERIFY(save->isEnabled());
        QSignalSpy shown(&page(), &EditorPage::shown);
        save->click();
        QVERIFY(shown.wait());
        QCOMPARE(document->told.mid(0, 2), (QStringList{"Edit Source", "css"}));
        QCOMPARE(answer("document.body.innerText.trim()"), "New");
    }

    void contextMenu_marksTheSelection()
    {
        QVERIFY(show("<h2 style='margin: 0; font-size: 80px; text-align: center'><b>wide heading</b></h2>"));
        QTest::mouseClick(controller->webView()->focusProxy(), Qt::RightButton, {}, QPoint(300, 50));
        QTRY_VERIFY(controller->webView()->findChild<QMenu*>("webViewMenu"));
        auto* menu = controller->webView()->findChild<QMenu*>("webViewMenu");
        QStringList titles;
        for (const QAction* action : menu->actions())
            titles.append(action->text());
        QCOMPARE(titles, (QStringList{"Inspect Element", "Text Style", "Text Justification"}));
        QStringList marked;
        for (const QMenu* each : {controller->fontSubMenu(), controller->justificationSubMenu()})
            for (const QAction* action : each->actions())
                if (action->isChecked())
                    marked.append(action->text());
        QCOMPARE(marked, (QStringList{"Bold", "Heading 2", "Justify Center"}));
        menu->close();
    }

    void undoKeys_goToTheDocument()
    {
        QVERIFY(show("<p>one</p>"));
        QTest::keyClick(controller->webView()->focusProxy(), Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(controller->webView()->focusProxy(), Qt::Key_Z,
                        Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(document->told.filter("do"), (QStringList{"undo", "redo"}));
    }
};

LUMA_TEST(tst_viewcontroller)
#include "tst_viewcontroller.moc"
