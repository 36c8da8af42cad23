// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/fileplaces.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

using namespace luma;
using test::Site;
namespace fs = std::filesystem;

/// Items that another program has moved.
class tst_fileplaces final : public QObject
{
    Q_OBJECT

private:
    // "FROM > TO" of each, the folders in which something has changed after a colon.
    static QByteArrayList found(const Site& site, FilePlaces& places, const QByteArrayList& changed)
    {
        std::set<std::string> folders;
        for (const QByteArray& folder : changed)
            folders.insert(folder.isEmpty() ? site.root().native() : site.at(folder.toStdString()).native());
        const auto moved =
            places.update(changed.contains("*") ? std::nullopt : std::optional(std::move(folders)));
        QByteArrayList texts;
        for (const MovedItem& item : moved)
            texts.append(QByteArray::fromStdString(item.from.lexically_relative(site.root()).native() +
                                                   " > " + item.to.lexically_relative(site.root()).native()));
        return texts;
    }

private slots:
    void movedItems_areFound_data()
    {
        // "A > B": rename, "A + B": copy with its time, "A = B": with a new one, "A": remove, "A !": write.
        QTest::addColumn<QByteArrayList>("steps");
        QTest::addColumn<QByteArrayList>("changed");
        QTest::addColumn<QByteArrayList>("moved");
        using List = QByteArrayList;
        QTest::newRow("a file") << List{"a/x.html > y.html"} << List{"a", ""} << List{"a/x.html > y.html"};
        QTest::newRow("anywhere") << List{"a/x.html > b/x.html"} << List{"*"} << List{"a/x.html > b/x.html"};
        QTest::newRow("a folder") << List{"a > b/c"} << List{"", "b"} << List{"a > b/c"};
        QTest::newRow("a folder that was written to")
            << List{"a/new !", "a > c"} << List{"a", ""} << List{"a > c"};
        QTest::newRow("to another file system")
            << List{"a/x.html + b/x.html", "a/x.html"} << List{"a", "b"} << List{"a/x.html > b/x.html"};
        QTest::newRow("a copy is no move") << List{"a/x.html + b/x.html"} << List{"b"} << List{};
        QTest::newRow("written anew") << List{"a/x.html", "b/x.html !"} << List{"a", "b"} << List{};
        QTest::newRow("one of two alike")
            << List{"a/x.html + b/x.html", "a/x.html + x.html", "a/x.html"} << List{"a", "b", ""} << List{};
        QTest::newRow("copied with a new time and name")
            << List{"a/x.html = b/y.html", "a/x.html"} << List{"a", "b"} << List{"a/x.html > b/y.html"};
        QTest::newRow("copied twice, once with its name")
            << List{"a/x.html = b/y.html", "a/x.html = b/x.html", "a/x.html"} << List{"*"}
            << List{"a/x.html > b/x.html"};
        QTest::newRow("copied twice, with other names")
            << List{"a/x.html = b/y.html", "a/x.html = b/z.html", "a/x.html"} << List{"*"} << List{};
        QTest::newRow("one that stays elsewhere") << List{"o.html"} << List{""} << List{};
        QTest::newRow("a folder in the place of another")
            << List{"a/d > d", "a", "d > a"} << List{""} << List{"a/d > a"};
    }
    void movedItems_areFound()
    {
        QFETCH(QByteArrayList, steps);
        QFETCH(QByteArrayList, changed);
        QFETCH(QByteArrayList, moved);
        const Site site(
            {{"a/x.html", "x"}, {"a/d/z.html", "z"}, {"b/s.css", "s"}, {"o.html", "o"}, {"b/o.html", "o"}});
        for (const auto& [path, bytes] : site.contents())
            site.setAge(path, 100 + static_cast<double>(path.size()));
        fs::last_write_time(site.at("b/o.html"), fs::last_write_time(site.at("o.html")));
        FilePlaces places(site.root());
        QCOMPARE(found(site, places, {"*"}), QByteArrayList());
        for (const QByteArray& step : steps) {
            const QByteArrayList parts = step.split(' ');
            const fs::path from = site.at(parts[0].toStdString());
            if (parts.size() == 1) {
                fs::remove_all(from);
            } else if (parts[1] == "!") {
                site.put(parts[0].toStdString(), "new");
            } else if (const fs::path to = site.at(parts[2].toStdString()); parts[1] == ">") {
                fs::rename(from, to);
            } else {
                fs::copy_file(from, to);
                if (parts[1] == "+")
                    fs::last_write_time(to, fs::last_write_time(from));
            }
        }
        QCOMPARE(found(site, places, changed), moved);
        QCOMPARE(found(site, places, {"*"}), QByteArrayList());
    }

    // The two notifications may come one after the other, in either order.
    void halves_areJoined()
    {
        const Site site({{"a/x.html", "x"}, {"b/s.css", ""}, {"c/s.css", ""}});
        FilePlaces places(site.root());
        QCOMPARE(found(site, places, {"*"}), QByteArrayList());
        fs::rename(site.at("a/x.html"), site.at("b/x.html"));
        QCOMPARE(found(site, places, {"a"}), QByteArrayList());
        QCOMPARE(found(site, places, {"b"}), QByteArrayList{"a/x.html > b/x.html"});
        fs::rename(site.at("b/x.html"), site.at("c/x.html"));
        QCOMPARE(found(site, places, {"c"}), QByteArrayList());
        QCOMPARE(found(site, places, {"b"}), QByteArrayList{"b/x.html > c/x.html"});
    }
};

LUMA_TEST(tst_fileplaces)
#include "tst_fileplaces.moc"
