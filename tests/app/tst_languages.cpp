// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/desktopstyle.h"
#include "app/newsiteassistant.h"
#include "app/preferencesdialog.h"
#include "app/program.h"
#include "app/sitelistwindow.h"
#include "base/resources.h"
#include "base/usertext.h"
#include "browser/browser.h"
#include "browser/browsercontroller.h"
#include "browser/elidinglabel.h"
#include "editor/htmldocument.h"
#include "site/haldendoc.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"
#include "tests/support/shownwindow.h"
#include "web/editorpage.h"
#include "web/mywebview.h"
#include "web/viewcontroller.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

using namespace luma;

namespace {

QString shown(const QWidget& widget)
{
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    const auto* const button = qobject_cast<const QAbstractButton*>(&widget);
    return label ? label->text() : button ? button->text() : QString();
}

// A wrapped label only has to be high enough.
bool isCutOff(const QWidget& widget)
{
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    if (label && label->wordWrap())
        return widget.height() < label->heightForWidth(widget.width());
    return widget.width() < widget.sizeHint().width();
}

QStringList cutOffTexts(const QWidget& window)
{
    QStringList texts;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isChecked = widget->isVisibleTo(&window) && widget->window() == window.window() &&
                               !qobject_cast<const ElidingLabel*>(widget) && !shown(*widget).isEmpty();
        if (isChecked && isCutOff(*widget))
            texts.append(widget->objectName() + ": " + shown(*widget));
    }
    return texts;
}

// Entries of one menu that answer to the same letter.
QStringList sharedMnemonics(const QWidget& window)
{
    QStringList shared;
    for (const QMenu* menu : window.findChildren<QMenu*>()) {
        QMap<QKeySequence, QString> letters;
        for (const QAction* action : menu->actions()) {
            const QKeySequence letter = QKeySequence::mnemonic(action->text());
            if (!letter.isEmpty() && letters.contains(letter))
                shared.append(menu->title() + ": " + letters[letter] + ", " + action->text());
            letters[letter] = action->text();
        }
    }
    return shared;
}

} // namespace

/// The windows in each language and at a large text size: nothing is cut off, and every menu entry has its own letter.
class tst_languages final : public QObject
{
    Q_OBJECT

    static void check(QWidget& window, const QString& name)
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* const tabs = window.findChild<QTabWidget*>(QStringLiteral("pages"));
        for (int tab = tabs ? tabs->count() - 1 : 0; tab >= 0; --tab) {
            if (tabs)
                tabs->setCurrentIndex(tab);
            // Layouts are brought up to date later.
            QTRY_COMPARE(cutOffTexts(window).join(QLatin1String("; ")), QString());
        }
        QCOMPARE(sharedMnemonics(window).join(QLatin1String("; ")), QString());
        test::saveScreenshots(
            window, QStringLiteral("%1-%2").arg(QString::fromLatin1(QTest::currentDataTag()), name));
    }

    // They are about as high as the text beside them.
    static void checkIcons(const QWidget& window)
    {
        for (const auto* button : window.findChildren<QAbstractButton*>()) {
            if (!button->icon().isNull())
                QVERIFY2(button->iconSize().height() * 3 > button->fontMetrics().height() * 2,
                         qPrintable(button->objectName()));
        }
    }

    // They follow each other the way one reads, and so do the arrow keys.
    static void checkColumns(const HaldenDoc& window, Qt::LayoutDirection direction)
    {
        const bool isMirrored = direction == Qt::RightToLeft;
        QWidget& pane = *window.sourceBrowserController().widget();
        auto* const first = pane.findChild<QWidget*>("browserList0");
        auto* const second = pane.findChild<QWidget*>("browserList1");
        const auto left = [&pane](QWidget* list) { return list->mapTo(&pane, QPoint()).x(); };
        QTRY_COMPARE(left(second) < left(first), isMirrored);
        Browser& browser = window.sourceBrowserController().browser();
        QCOMPARE(browser.currentColumn(), 1);
        QTest::keyClick(second, isMirrored ? Qt::Key_Right : Qt::Key_Left);
        QCOMPARE(browser.currentColumn(), 0);
        QTest::keyClick(first, isMirrored ? Qt::Key_Left : Qt::Key_Right);
        QCOMPARE(browser.currentColumn(), 1);
    }

private slots:
    void hints_areReadable_data()
    {
        QTest::addColumn<QColor>("text");
        QTest::addColumn<QColor>("hint");
        QTest::addColumn<QColor>("shown");
        QTest::newRow("light") << QColor(30, 30, 30) << QColor(0, 0, 0, 100) << QColor(0, 0, 0, 100);
        QTest::newRow("dark") << QColor(250, 250, 250) << QColor(160, 170, 180) << QColor(160, 170, 180);
        QTest::newRow("dark, hint of a light desktop")
            << QColor(250, 250, 250) << QColor(0, 0, 0, 128) << QColor(250, 250, 250, 128);
    }
    void hints_areReadable()
    {
        QFETCH(QColor, text);
        QFETCH(QColor, hint);
        QFETCH(QColor, shown);
        QPalette palette;
        palette.setColor(QPalette::Text, text);
        palette.setColor(QPalette::PlaceholderText, hint);
        DesktopStyle().polish(palette);
        QCOMPARE(palette.color(QPalette::PlaceholderText), shown);
    }

    void windows_areReadable_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("pointSize");
        QTest::addColumn<QString>("sentence");
        QTest::addColumn<Qt::LayoutDirection>("direction");
        const int usual = QApplication::font().pointSize();
        QTest::newRow("en") << "en" << usual << "Not connected." << Qt::LeftToRight;
        QTest::newRow("de") << "de" << usual << "Nicht verbunden." << Qt::LeftToRight;
        QTest::newRow("en-large") << "en" << 20 << "Not connected." << Qt::LeftToRight;
        QTest::newRow("de-large") << "de" << 20 << "Nicht verbunden." << Qt::LeftToRight;
        QTest::newRow("en-mirrored") << "en" << usual << "Not connected." << Qt::RightToLeft;
    }
    void windows_areReadable()
    {
        QFETCH(QString, language);
        QFETCH(int, pointSize);
        QFETCH(QString, sentence);
        QFETCH(Qt::LayoutDirection, direction);
        QApplication::setLayoutDirection(direction);
        QFont font = QApplication::font();
        font.setPointSize(pointSize);
        QApplication::setFont(font);
        DesktopStyle::use();
        QTranslator texts;
        const QString folder = QFile::decodeName((resourceFolder() / "translations").c_str());
        if (language != "en")
            QVERIFY(texts.load("luma_" + language, folder));
        QCoreApplication::installTranslator(&texts);
        QTemporaryDir home;
        QDir(home.path()).mkpath("a/s");
        QVERIFY(QFile(home.filePath("a/s/p.html")).open(QFile::WriteOnly));
        QDir(home.path()).mkpath("b");
        QFile page(home.filePath("a/index.html"));
        QVERIFY(page.open(QFile::WriteOnly) && page.write("<!DOCTYPE html><title>T</title><p>x</p>\n") > 0);
        page.close();

        Program program(home.filePath("luma.conf"), [](const auto&) { return std::string(); });
        check(program.delegate().siteListWindow(), "sites");
        QVERIFY(program.launch(
            readCommandLine({home.filePath("a").toStdString(), home.filePath("b").toStdString()})));
        auto* const site = test::shownWindow<HaldenDoc>();
        QVERIFY(site);
        QTRY_VERIFY(site->sourceBrowserController().rootNode());
        site->sourceBrowserController().browser().setPath({"s", "p.html"});
        check(*site, "site");
        checkIcons(*site);
        checkColumns(*site, direction);
        site->sourceBrowserController().disconnectPane();
        QVERIFY(site->sourceBrowserController()
                    .widget()
                    ->findChild<QLabel*>("emptyText")
                    ->text()
                    .startsWith(sentence));
        QVERIFY(program.launch(readCommandLine({home.filePath("a/index.html").toStdString()})));
        const QPointer<HTMLDocument> document = test::shownWindow<HTMLDocument>();
        QVERIFY(document);
        QTRY_VERIFY(document->viewController().webView()->editorPage().isComplete());
        check(*document, "page");
        program.delegate().siteListWindow().findChild<QAction*>("addAction")->trigger();
        QTRY_VERIFY(test::shownWindow<NewSiteAssistant>());
        check(*test::shownWindow<NewSiteAssistant>(), "assistant");
        test::shownWindow<NewSiteAssistant>()->close();
        program.delegate().siteListWindow().findChild<QAction*>("preferencesAction")->trigger();
        QTRY_VERIFY(test::shownWindow<PreferencesDialog>());
        check(*test::shownWindow<PreferencesDialog>(), "preferences");
        document->close();
        site->close();
        QTRY_VERIFY(!document);
        QCoreApplication::removeTranslator(&texts);
    }
    // Names of files in them are bytes, and nothing in those is taken for a place.
    void textsOfTheEngines_areTranslated()
    {
        const auto text = [](const char* name) {
            return userText(QT_TRANSLATE_NOOP("luma::Engines", "Rename %1 to %2"), {name, "b 5%"});
        };
        QCOMPARE(text("\xff%2"), std::string("Rename \xff%2 to b 5%"));
        QTranslator texts;
        QVERIFY(texts.load("luma_de", QFile::decodeName((resourceFolder() / "translations").c_str())));
        QCoreApplication::installTranslator(&texts);
        QCOMPARE(text("\xff%2"), std::string("\xff%2 in b 5% umbenennen"));
        QCoreApplication::removeTranslator(&texts);
        QCOMPARE(userText(""), std::string());
    }
    static void cleanup() { QApplication::setLayoutDirection(Qt::LeftToRight); }
};

LUMA_TEST(tst_languages)
#include "tst_languages.moc"
