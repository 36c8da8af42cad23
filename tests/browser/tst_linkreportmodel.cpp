// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkreportmodel.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QAbstractItemModelTester>
#include <QTest>

using namespace luma;

namespace {

WebLink missing(std::uint32_t line, const char* value, const char* target,
                MissingReason why = MissingReason::NoSuchFile)
{
    WebLink link;
    link.state = LinkState::Missing;
    link.why = why;
    link.line = line;
    link.value = value;
    link.target = target;
    return link;
}

// Every row as "group: page line link".
QStringList rowsOf(const LinkReportModel& model, const QModelIndex& parent = {})
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        if (model.isGroup(index)) {
            rows += index.data().toString();
            rows += rowsOf(model, index);
            continue;
        }
        const auto text = [&](int column) { return index.siblingAtColumn(column).data().toString(); };
        rows +=
            QStringList{text(LinkReportModel::Page), text(LinkReportModel::Line), text(LinkReportModel::Link)}
                .join(u' ')
                .trimmed();
    }
    return rows;
}

} // namespace

class tst_linkreportmodel final : public QObject
{
    Q_OBJECT

private slots:
    void rows_areGroupedSortedAndFiltered_data()
    {
        using Grouping = LinkReportModel::Grouping;
        const test::Rows<int, int, bool, QString, QString> row("grouping", "column", "descending", "filter",
                                                               "rows");
        const int none = int(Grouping::None);
        const int byPage = int(Grouping::ByPage);
        const int byTarget = int(Grouping::ByTarget);
        row("as found", none, -1, false, "", "a.html 2 x.png|a.html 9 Z.png|b/c.html|d.html 1 ../x.png");
        row("by link", none, LinkReportModel::Link, false, "",
            "b/c.html|d.html 1 ../x.png|a.html 9 Z.png|a.html 2 x.png");
        row("by line, down", none, LinkReportModel::Line, true, "",
            "a.html 9 Z.png|a.html 2 x.png|d.html 1 ../x.png|b/c.html");
        row("by page, down", none, LinkReportModel::Page, true, "",
            "d.html 1 ../x.png|b/c.html|a.html 2 x.png|a.html 9 Z.png");
        row("pages", byPage, -1, false, "",
            "a.html  (2)|a.html 2 x.png|a.html 9 Z.png|b/c.html  (1)|b/c.html|d.html  (1)|d.html 1 ../x.png");
        row("targets, the largest first", byTarget, -1, false, "",
            "x.png  (2)|a.html 2 x.png|d.html 1 ../x.png|Z.png  (1)|a.html 9 Z.png|b/c.html  (1)|b/c.html");
        row("targets by name", byTarget, LinkReportModel::Link, false, "png",
            "Z.png  (1)|a.html 9 Z.png|x.png  (2)|d.html 1 ../x.png|a.html 2 x.png");
        row("filter", byPage, -1, false, "NO SUCH",
            "a.html  (2)|a.html 2 x.png|a.html 9 Z.png|d.html  (1)|d.html 1 ../x.png");
        row("filter by what can't be read", none, -1, false, "denied", "b/c.html");
        row("nothing left", byTarget, -1, false, "nowhere", "");
    }
    // Rows that come one page at a time end up as those that come together.
    void rows_areGroupedSortedAndFiltered()
    {
        QFETCH(int, grouping);
        QFETCH(int, column);
        QFETCH(bool, descending);
        QFETCH(QString, filter);
        QFETCH(QString, rows);
        const std::vector<WebPage> pages{
            {"a.html", {}, {missing(2, "x.png", "x.png"), missing(9, "Z.png", "Z.png")}},
            {"b/c.html", "denied", {}},
            {"d.html", {}, {missing(1, "../x.png", "x.png")}}};
        for (const bool together : {true, false}) {
            LinkReportModel model;
            const QAbstractItemModelTester tester(&model);
            model.setGrouping(LinkReportModel::Grouping(grouping));
            model.setFilter(filter);
            model.sort(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
            if (together)
                model.setPages(pages);
            for (const WebPage& page : pages) {
                if (!together)
                    model.append({page});
            }
            QCOMPARE(rowsOf(model).join(u'|'), rows);
            QCOMPARE(model.linkCount(), 3U);
            QCOMPARE(model.unreadableCount(), 1U);
            QCOMPARE(model.shownFindings().size(), model.shownCount());
            model.setFilter({});
            model.setGrouping(LinkReportModel::Grouping::None);
            model.sort(-1);
            QCOMPARE(model.rowCount(), 4);
        }
    }

    void aSelectedGroup_standsForItsRowsOnce()
    {
        LinkReportModel model;
        model.setPages({{"a.html", {}, {missing(1, "x", "x"), missing(2, "y", "y")}},
                        {"b.html", {}, {missing(3, "x", "x")}}});
        model.setGrouping(LinkReportModel::Grouping::ByPage);
        const QModelIndex group = model.index(0, 0);
        const auto found =
            model.findings({model.index(0, 0, model.index(1, 0)), group, model.index(1, 0, group)});
        QCOMPARE(found.size(), 3U);
        QCOMPARE(found[0].link->value, std::string("x"));
        QCOMPARE(found[1].link->value, std::string("y"));
        QCOMPARE(found[2].page->path, std::string("b.html"));
        QVERIFY(model.findings({QModelIndex()}).empty());
    }
};

LUMA_TEST(tst_linkreportmodel)
#include "tst_linkreportmodel.moc"
