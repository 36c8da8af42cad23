// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/editor/pagewindow.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace luma;

namespace {

const std::string phpPage =
    "<?php $t = 1 ?>\r\n<!DOCTYPE html>\r\n<html><head><title><?= $t ?></title></head>\r\n"
    "<body class=\"<?= $c ?>\"><p>one <?php echo \"<b>two</b>\" ?> three</p>\r\n"
    "<table><?php foreach ($r as $x): ?><tr><td><?= $x ?></td></tr><?php endforeach ?></table>\r\n"
    "<a href=\"<?= $u ?>\" <?= $more ?>>link</a></body></html>\r\n";

const QString marks = QStringLiteral(
    "Array.from(document.body.querySelectorAll('template'), (mark) => mark.getBoundingClientRect().width > 20 &&"
    "getComputedStyle(mark, '::before').content.replace(/[\"\\\\]/g, '')).join('|')");

} // namespace

/// Server code in the page's window.
class tst_servercode final : public QObject, private luma::test::PageWindow
{
    Q_OBJECT

private:
    QByteArray saved() const { return QByteArray::fromStdString(file("page.html")); }
    static QByteArray withChange(const std::string& from, const std::string& to)
    {
        std::string expected = phpPage;
        return QByteArray::fromStdString(expected.replace(expected.find(from), from.size(), to));
    }

private slots:
    void cleanup() { close(); }

    void code_isShownAndKept()
    {
        open(phpPage);
        QCOMPARE(
            answer(marks),
            QString("<?php echo <b>two</b> ?>|<?php foreach ($r as $x): ?>|<?= $x ?>|<?php endforeach ?>"));
        QVERIFY(row("<?php echo").isValid());
        QVERIFY(row("<?php endforeach ?>").isValid());
        QVERIFY(row("<a href=\"<?= $u ?>\", <?= $more ?>> link").isValid());
        test::saveScreenshots(*window, "server-code");
        setCaretBehind("three");
        type("q");
        trigger("saveAction");
        QTRY_COMPARE(saved(), withChange("three", "threeq"));
    }

    void mark_isSelectedAndDeletedAsOne()
    {
        open(phpPage);
        focusPage();
        const QStringList place =
            answer("(() => { const box = document.querySelector('p template').getBoundingClientRect();"
                   "return [box.x + box.width / 2, box.y + box.height / 2].join(' '); })()")
                .split(u' ');
        QWidget* const input = rendering().webView()->focusProxy();
        QTest::mouseClick(input, Qt::LeftButton, {},
                          QPointF(place[0].toDouble(), place[1].toDouble()).toPoint());
        QTRY_COMPARE(
            answer(
                "getSelection().getRangeAt(0).cloneContents().childNodes.length + getSelection().getRangeAt(0)"
                ".cloneContents().firstChild.localName"),
            QString("1template"));
        QTest::keyClick(input, Qt::Key_Delete);
        QTRY_VERIFY(!tree().contains("two"));
        trigger("saveAction");
        QTRY_COMPARE(saved(), withChange("<?php echo \"<b>two</b>\" ?>", ""));
        waitUntilShown();
        trigger("undoAction");
        waitUntilShown();
        trigger("saveAction");
        QTRY_COMPARE(saved(), QByteArray::fromStdString(phpPage));
    }

    void pageSource_isTheFile()
    {
        open(phpPage);
        trigger("showSourceAction");
        auto* const source = the<QPlainTextEdit>("sourceField");
        QTRY_VERIFY(source->isVisible());
        QCOMPARE(source->toPlainText().toUtf8().replace("\n", "\r\n"), QByteArray::fromStdString(phpPage));
        test::saveScreenshots(*source->window(), "page-source");
        source->setPlainText(
            source->toPlainText().replace("<td><?= $x ?>", "<TD  title='<?= f(\"y\") ?>'><?= $y ?>"));
        QTest::mouseClick(the<QPushButton>("saveSourceButton"), Qt::LeftButton);
        QTRY_VERIFY(tree().contains("$y"));
        trigger("saveAction");
        QTRY_COMPARE(saved(), withChange("<td><?= $x ?>", "<TD  title='<?= f(\"y\") ?>'><?= $y ?>"));
    }
};

LUMA_TEST(tst_servercode)

#include "tst_servercode.moc"
