// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/textcomparison.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma;

// Both texts, and the lines as diff's side-by-side form marks them: "left|right", with = or ! in front.
class tst_textcomparison final : public QObject
{
    Q_OBJECT

private slots:
    void linesStandSideBySide_data()
    {
        const test::Rows<QByteArray, QByteArray, QByteArray> row("left", "right", "lines");
        row("both empty", "", "", "");
        row("same", "a\nb\n", "a\nb\n", "=a|a =b|b");
        row("line ends", "a\r\nb\r\n", "a\nb\n", "=a|a =b|b");
        row("changed", "a\nb\nc\n", "a\nX\nc\n", "=a|a !b|X =c|c");
        row("longer on the right", "a\nb\n", "X\nY\nb\n", "!a|X !|Y =b|b");
        row("only on the left", "a\nb\n", "b\n", "!a| =b|b");
        row("only on the right", "", "a\n", "!|a");
        row("no line end at the end", "a\nb", "a\nb", "=a|a =b|b");
        row("what looks like diff's own words", "=1 0\n!9 9\n", "!9 9\n", "!=1_0| =!9_9|!9_9");
    }
    void linesStandSideBySide()
    {
        QFETCH(QByteArray, left);
        QFETCH(QByteArray, right);
        const auto lines = comparedLines(left.toStdString(), right.toStdString(), {});
        QVERIFY2(bool(lines), lines ? "" : lines.error().text.c_str());
        QByteArrayList shown;
        for (const ComparedLine& line : *lines) {
            const std::string both = (line.isEqual ? "=" : "!") + line.left + "|" + line.right;
            shown.append(QByteArray::fromStdString(both).replace(' ', '_'));
            QVERIFY(line.isOnLeft || line.left.empty());
            QVERIFY(line.isOnRight || line.right.empty());
        }
        QTEST(shown.join(' '), "lines");
    }
};

LUMA_TEST(tst_textcomparison)
#include "tst_textcomparison.moc"
