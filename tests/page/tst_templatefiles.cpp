// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/templatefiles.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"
#include "tests/support/site.h"

#include <QTest>

#include <unistd.h>

#include <memory>

using namespace luma;
namespace fs = std::filesystem;

namespace {

// "images/a.png=bytes", one file a line.
test::Files filesIn(const QString& text)
{
    test::Files files;
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts))
        files[line.section(u'=', 0, 0).toStdString()] = line.section(u'=', 1).toStdString();
    return files;
}

QString textOf(const test::Files& files)
{
    QString text;
    for (const auto& [name, bytes] : files)
        text += QString::fromStdString(name + "=" + bytes + "\n");
    return text;
}

} // namespace

/// What a page made from a template brings into its site.
class tst_templatefiles final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::Site> disk;

    Result<CopiedFiles> copy(const char* page = "templates/t.html") const
    {
        return copyTemplateFiles({disk->at(page), disk->at("templates")}, disk->at("a/site"), {});
    }
    void put(const char* folder, const QString& files) const
    {
        disk->makeFolder(folder);
        for (const auto& [name, bytes] : filesIn(files))
            disk->put(std::string(folder) + "/" + name, bytes);
    }

private slots:
    void init() { disk = std::make_unique<test::Site>(); }

    void files_comeAlong_data()
    {
        const test::Rows<QString, QString, QString, QString, QString> row("page", "files", "before", "after",
                                                                          "shown");
        row("in their folders",
            "<link rel=stylesheet href=css/m.css><img src='img/a.png' srcset='img/b.png 2x'>",
            "css/m.css=p {}\nimg/a.png=A\nimg/b.png=B\nimg/c.png=not used", "",
            "css/m.css=p {}\nimg/a.png=A\nimg/b.png=B\n",
            "<link rel=stylesheet href=css/m.css><img src='img/a.png' srcset='img/b.png 2x'>");
        row("beside the page", "<img src=a.png><script src=s.js></script><video poster=a.png src=v.mp4>",
            "a.png=A\ns.js=S\nv.mp4=V", "images/x.png=X\njs/x.js=X",
            "images/a.png=A\nimages/x.png=X\njs/s.js=S\njs/x.js=X\nv.mp4=V\n",
            "<img src=images/a.png><script src=js/s.js></script><video poster=images/a.png src=v.mp4>");
        row("what sheets use", "<link rel=stylesheet href=m.css>",
            "m.css=@import 'more/n.css'; p { background: url(a.png) }\n"
            "more/n.css=@font-face { src: url(\"../f.woff2\") } @import url(../m.css);\na.png=A\nf.woff2=F",
            "css/x.css=X\nimages/x.png=X",
            "css/m.css=@import '../more/n.css'; p { background: url(../images/a.png) }\ncss/x.css=X\n"
            "f.woff2=F\nimages/a.png=A\nimages/x.png=X\n"
            "more/n.css=@font-face { src: url(\"../f.woff2\") } @import url(../css/m.css);\n",
            "<link rel=stylesheet href=css/m.css>");
        row("of the page's own styles",
            "<style>p { background: url(i/a.png) }</style><p style='background: url(i/b.png)'>",
            "i/a.png=A\ni/b.png=B", "", "i/a.png=A\ni/b.png=B\n",
            "<style>p { background: url(i/a.png) }</style><p style='background: url(i/b.png)'>");
        row("equal ones once", "<link rel=stylesheet href=c/m.css><img src=c/a.png>",
            "c/m.css=p { background: url(a.png) }\nc/a.png=A",
            "c/m.css=p { background: url(a.png) }\nc/a.png=A",
            "c/a.png=A\nc/m.css=p { background: url(a.png) }\n",
            "<link rel=stylesheet href=c/m.css><img src=c/a.png>");
        row("beside others of their names", "<link rel=stylesheet href=c/m.css><img src=c/a.png>",
            "c/m.css=p { background: url(a.png) }\nc/a.png=A", "c/m.css=other\nc/a.png=O\nc/a-2.png=P",
            "c/a-2.png=P\nc/a-3.png=A\nc/a.png=O\nc/m-2.css=p { background: url(a-3.png) }\nc/m.css=other\n",
            "<link rel=stylesheet href=c/m-2.css><img src=c/a-3.png>");
        row("to one place", "<img src=a.png><img src=images/a.png>", "a.png=A\nimages/a.png=B",
            "images/b.png=b", "images/a-2.png=B\nimages/a.png=A\nimages/b.png=b\n",
            "<img src=images/a.png><img src=images/a-2.png>");
        row("from the root", "<img src=/c/a.png>", "c/a.png=A", "c/a.png=B", "c/a-2.png=A\nc/a.png=B\n",
            "<img src=/c/a-2.png>");
        row("strange names", "<img src='a%20b%23.png'><img src='&#252;.png'>", "a b#.png=A\nü.png=U", "",
            "a b#.png=A\nü.png=U\n", "<img src='a%20b%23.png'><img src='&#252;.png'>");
        row("a document", "<a href=d/p.pdf>p</a>", "d/p.pdf=P", "", "d/p.pdf=P\n", "<a href=d/p.pdf>p</a>");
        row("no pages, nothing missing",
            "<a href=u.html>u</a><a href=v.html#a>v</a><img src=gone.png><a href=''>s</a>", "u.html=U", "",
            "", "<a href=u.html>u</a><a href=v.html#a>v</a><img src=gone.png><a href=''>s</a>");
        row("what is elsewhere", "<img src=../a/site/i/a.png><img src=../b.png><img src=https://x.org/a.png>",
            "", "i/a.png=A", "i/a.png=A\n",
            "<img src=i/a.png><img src=../../b.png><img src=https://x.org/a.png>");
        row("the name of the page", "<img src=Untitled.html>", "Untitled.html=U", "", "Untitled-2.html=U\n",
            "<img src=Untitled-2.html>");
    }
    void files_comeAlong()
    {
        QFETCH(QString, page);
        QFETCH(QString, files);
        QFETCH(QString, before);
        QFETCH(QString, after);
        put("templates", files);
        put("a/site", before);
        disk->put("templates/t.html", page.toStdString());
        const auto copied = copy();
        QVERIFY2(copied, copied ? "" : copied.error().text.c_str());
        QTEST(QString::fromStdString(copied->page), "shown");
        QCOMPARE(textOf(disk->contents("a/site")), after);
        // Another page of the template finds them there.
        const auto again = copy();
        QVERIFY(again && again->made.empty());
        QCOMPARE(again->page, copied->page);
        removeMade(copied->made);
        QCOMPARE(textOf(disk->contents("a/site")), textOf(filesIn(before)));
    }

    void failure_leavesNothing_data()
    {
        const test::Rows<QString, QString> row("obstacle", "reason");
        row("link out", "link out", "b.png: leads out of the folder of templates");
        row("file in the way", "file in the way", "Not a directory");
        row("unreadable", "unreadable", "a/site/z");
        row("too much", "too much", "too large: 300 MB");
    }
    void failure_leavesNothing()
    {
        QFETCH(QString, obstacle);
        QFETCH(QString, reason);
        put("templates",
            "i/a.png=A\nt.html=<img src=i/a.png><img src=out/b.png><img src=z/c.png>\nz/c.png=C");
        disk->put("secret/b.png", "secret");
        put("a/site", "x.html=X");
        if (obstacle == "link out") {
            disk->makeFolder("templates/out");
            fs::create_symlink(disk->at("secret/b.png"), disk->at("templates/out/b.png"));
        } else if (obstacle == "file in the way") {
            disk->put("a/site/z", "a file");
        } else if (obstacle == "unreadable") {
            fs::create_symlink(disk->at("nowhere"), disk->at("a/site/z"));
        } else {
            fs::resize_file(disk->at("templates/z/c.png"), std::uintmax_t{300} << 20U);
        }
        const auto before = disk->listing("a/site");
        const auto copied = copy();
        QVERIFY(!copied);
        QVERIFY2(copied.error().text.find(reason.toStdString()) != std::string::npos,
                 copied.error().text.c_str());
        QCOMPARE(disk->listing("a/site"), before);
    }
    void linkedFolder_isNotEntered()
    {
        put("templates", "t.html=<img src=out/b.png>");
        disk->put("secret/b.png", "secret");
        fs::create_symlink(disk->at("secret"), disk->at("templates/out"));
        put("a/site", "x.html=X");
        QVERIFY(copy());
        QCOMPARE(disk->listing("a/site"), "x.html\n");
    }
};

LUMA_TEST(tst_templatefiles)
#include "tst_templatefiles.moc"
