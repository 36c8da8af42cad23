// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "web/spelldictionaries.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QStandardPaths>
#include <QTest>

using namespace luma;
namespace fs = std::filesystem;

namespace {

constexpr auto misspelled =
    "<!DOCTYPE html><html lang=en-GB><title>T</title><body style='margin:0;font-size:60px'>"
    "<p style='margin:0'>helo world</p></body></html>";

} // namespace

/// The spell check of a page, with a small dictionary of a language of its own.
class tst_spelling final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    static void putDictionary(const QString& name, const QByteArray& words)
    {
        const QString folder =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/hunspell/"_qs;
        QDir().mkpath(folder);
        QFile affixes(folder + name + u".aff"_qs);
        QVERIFY(affixes.open(QFile::WriteOnly));
        affixes.write("SET UTF-8\nTRY eohlwrd\n");
        QFile list(folder + name + u".dic"_qs);
        QVERIFY(list.open(QFile::WriteOnly));
        list.write(QByteArray::number(words.count('\n')) + '\n' + words);
    }
    /// The entries of the menu at a point of the page.
    QStringList menuAt(const QPoint& where)
    {
        if (auto* const old = rendering().webView()->findChild<QMenu*>(u"webViewMenu"_qs))
            delete old;
        QTest::mouseClick(rendering().webView()->focusProxy(), Qt::RightButton, {}, where);
        QMenu* menu = nullptr;
        (void)QTest::qWaitFor(
            [&] { return (menu = rendering().webView()->findChild<QMenu*>(u"webViewMenu"_qs)); }, patience);
        QStringList texts;
        const QList<QAction*> entries = menu ? menu->actions() : QList<QAction*>();
        for (const QAction* const entry : entries)
            texts.append(entry->text());
        return texts;
    }

private slots:
    void initTestCase()
    {
        if (!SpellDictionaries::converter())
            QSKIP("qwebengine_convert_dict is not installed");
        putDictionary(u"en_GB"_qs, "hello\nworld\n");
    }
    void cleanup() { close(); }

    // The first one, so that the folder of the dictionaries is not there yet.
    void misspelledWord_isCorrectedFromTheMenuAndInTheFile()
    {
        open(misspelled);
        QVERIFY(!menuAt({40, 40}).contains(u"hello"_qs));
        trigger("spellCheckAction");
        focusPage();
        QTRY_VERIFY2(menuAt({40, 40}).contains(u"hello"_qs), qPrintable(menuAt({40, 40}).join(u'|')));
        QVERIFY2(!menuAt({300, 40}).contains(u"No Suggestions"_qs), "the other word is right");
        QVERIFY(menuAt({40, 40}).contains(u"hello"_qs));
        auto* const menu = rendering().webView()->findChild<QMenu*>(u"webViewMenu"_qs);
        test::saveScreenshots(*window, "spelling");
        menu->actions().at(0)->trigger();
        QTRY_VERIFY2(body().contains("hello world"), body().constData());
        trigger("saveAction");
        QTRY_COMPARE(QByteArray::fromStdString(file("page.html")),
                     QByteArray(misspelled).replace("helo", "hello"));
    }

    void dictionary_isFoundByLanguage()
    {
        putDictionary(u"zz_AA"_qs, "one\ntwo\n");
        putDictionary(u"zz_ZZ"_qs, "one\ntwo\n");
        const SpellDictionaries dictionaries = SpellDictionaries::ofTheDesktop();
        QCOMPARE(dictionaries.nameFor(u"zz-AA"_qs), u"zz_AA"_qs);
        QCOMPARE(dictionaries.nameFor(u"zz"_qs), u"zz_ZZ"_qs);
        QCOMPARE(dictionaries.nameFor(u"zz-QQ"_qs), u"zz_ZZ"_qs);
        QCOMPARE(dictionaries.nameFor(u"qq"_qs), QString());
        QCOMPARE(dictionaries.nameFor(u"../hunspell/zz_AA"_qs), QString());
        QCOMPARE(dictionaries.provide(u"qq_QQ"_qs), QString());
        QCOMPARE(dictionaries.provide(u"zz_AA"_qs), u"zz-AA"_qs);
        QVERIFY(fs::exists(dictionaries.copies() / "zz-AA.bdic"));
    }

    void quotationsInOtherLanguages_areNotMarked()
    {
        putDictionary(u"fr_FR"_qs, "bonjour\nmonde\n");
        const std::string page =
            "<!DOCTYPE html><html lang=en-GB><title>T</title><style>p { margin: 0; font-size: 40px }</style>"
            "<p>helo</p><p lang=fr>monde</p><p lang=qq>nihil <b lang=en-GB>helo</b></p><p>nihil</p></html>";
        open(page);
        if (the<QAction>("spellCheckAction")->isChecked())
            trigger("spellCheckAction");
        trigger("spellCheckAction");
        QTRY_COMPARE(the<QLabel>("noticeText")->text(), u"No spelling dictionary is installed for: qq"_qs);
        focusPage();
        const auto line = [](int number) { return QPoint(30, 45 * number + 30); };
        const QString marked = u"No Suggestions"_qs;
        QTRY_VERIFY2(menuAt(line(3)).contains(marked), "a word that English doesn't have is marked");
        QTRY_VERIFY2(menuAt(line(0)).contains(u"hello"_qs), "so is one with suggestions");
        QVERIFY2(!menuAt(line(1)).contains(marked), "right in the quotation's language");
        QVERIFY2(!menuAt(line(2)).contains(marked), "of a language without a dictionary");
        QTRY_VERIFY2(menuAt(line(2) + QPoint(110, 0)).contains(u"hello"_qs), "English inside it");
        test::saveScreenshots(*window, "spelling-quotations");
        click("<p lang=\"qq\"");
        trigger("duplicateAction");
        setCaretBehind("nihil");
        type("x");
        QTRY_VERIFY2(body().contains("nihilx"), body().constData());
        trigger("saveAction");
        QTRY_VERIFY2(file("page.html").find("nihilx") != std::string::npos, "saved");
        QVERIFY2(file("page.html").find("spellcheck") == std::string::npos, file("page.html").c_str());
        QVERIFY(!body().contains("spellcheck"));
    }

    void languageWithoutADictionary_isTold()
    {
        open("<!DOCTYPE html><html lang=qq><title>T</title><p>helo</p>");
        if (the<QAction>("spellCheckAction")->isChecked())
            trigger("spellCheckAction");
        trigger("spellCheckAction");
        QTRY_COMPARE(the<QLabel>("noticeText")->text(), u"No spelling dictionary is installed for: qq"_qs);
    }
    void pageWithoutALanguage_isCheckedInTheDesktopsOwn()
    {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::Zulu));
        open("<!DOCTYPE html><title>T</title><p>helo</p>");
        if (the<QAction>("spellCheckAction")->isChecked())
            trigger("spellCheckAction");
        trigger("spellCheckAction");
        QTRY_COMPARE(the<QLabel>("noticeText")->text(), u"No spelling dictionary is installed for: zu"_qs);
        QLocale::setDefault(before);
    }
};

LUMA_TEST(tst_spelling)
#include "tst_spelling.moc"
