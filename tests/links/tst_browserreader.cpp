// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ascii.h"
#include "links/browserreports.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace luma;
using luma::test::Site;
namespace fs = std::filesystem;

namespace {

std::string wordFor(MissingReason reason)
{
    switch (reason) {
    case MissingReason::FolderWithoutIndex:
        return "index";
    case MissingReason::NoSuchPlace:
        return "place";
    case MissingReason::OutsideSite:
        return "outside";
    default:
        return "file";
    }
}

// The lines that browserreader.py prints for the same findings, in any order.
QByteArrayList missingLinks(const fs::path& site)
{
    QByteArrayList rows;
    const auto done = checkWebLinks(site, {}, FindingsKept::Missing, [&rows](const WebPage& page) {
        for (const WebLink& link : page.links) {
            std::string value = link.value;
            std::replace_if(value.begin(), value.end(), isWhiteSpace, ' ');
            rows << QByteArray::fromStdString(page.path + "\t" + std::string(nameOf(link.place)) + "\t" +
                                              value + "\t" + wordFor(link.why));
        }
    });
    if (!done || !*done)
        rows = {"failed"};
    std::sort(rows.begin(), rows.end());
    return rows;
}

// Debian's interpreter has html5lib.
const QString python = QStringLiteral("/usr/bin/python3");

QByteArrayList missingForReader(const fs::path& site)
{
    QProcess reader;
    reader.start(python,
                 {qEnvironmentVariable("LUMA_SOURCE_DIR") + QLatin1String("/tests/links/browserreader.py"),
                  QString::fromStdString(site.native())});
    if (!reader.waitForFinished(-1) || reader.exitCode() != 0)
        return {"failed: " + reader.readAllStandardError()};
    QByteArrayList rows = reader.readAllStandardOutput().split('\n');
    rows.removeAll(QByteArray());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void compare(const fs::path& site)
{
    const QByteArrayList expected = missingForReader(site);
    const QByteArrayList found = missingLinks(site);
    for (const QByteArray& row : found)
        QVERIFY2(expected.contains(row), "a false alarm: " + row);
    for (const QByteArray& row : expected)
        QVERIFY2(found.contains(row), "overlooked: " + row);
    QCOMPARE(found.size(), expected.size());
    QVERIFY(!found.empty());
}

/// Makes pages and sheets whose links are spelled in every way, to names that need it.
class HostileSite final
{
public:
    explicit HostileSite(quint32 seed) : m_random(seed) {}

    void fill(const Site& site)
    {
        for (int i = 0; i < 40; ++i)
            site.put(one({"", "a/", "a/b/", "c d/"}) + "page" + std::to_string(i) +
                         one({".html", ".HTM", ".shtml"}),
                     page());
        for (int i = 0; i < 4; ++i)
            site.put(one({"", "a/"}) + "s" + std::to_string(i) + ".css", sheet(10));
        for (const char* const name :
             {"x.png", "a/X.png", "a/b/100%.png", "c d/#1.png", "c d/\xC3\xBC \xE2\x82\xAC.html",
              "a/index.html", "a/b/index.htm", "e/none.txt"})
            site.put(name, "<p id=there><a name='two words'>");
    }

private:
    std::string one(std::initializer_list<const char*> choices)
    {
        return choices.begin()[m_random.bounded(quint32(choices.size()))];
    }

    std::string address()
    {
        if (m_random.bounded(8) == 0)
            return one({"", "#", "#there", "#nowhere", "?q", "//other.org/", "http://other.org/x",
                        "mailto:x@y", "data:image/png;base64,AAAA", "javascript:void(0)", "tel:1",
                        "{{ url }}", "/", "."});
        std::string path =
            one({"", "./", "../", "../../", "/", "a/", "/a/./b/", "a//b/../", "/c%20d/", "/c d/", "\\a\\"});
        path += one({"x.png",
                     "X.png",
                     "x%2epng",
                     "100%.png",
                     "100%25.png",
                     "#1.png",
                     "%231.png",
                     "\xC3\xBC \xE2\x82\xAC.html",
                     "%C3%BC%20%E2%82%AC.html",
                     "index.html",
                     "",
                     "b",
                     "b/",
                     "e",
                     "none.txt",
                     "page1.html",
                     "%2E%2E/x.png",
                     "x.png/",
                     "&#x78;.png",
                     "x.p\nng",
                     "x%00.png",
                     "a%2Fx.png"});
        return path + one({"", "", "", "?v=1", "#there", "#two%20words", "#two words", "?a#nowhere", "#TOP"});
    }

    // In double quotes, so that it may hold blanks.
    std::string quoted() { return "\"" + address() + "\""; }

    std::string sheet(int rules)
    {
        std::string css = "/* url(gone.png) */ @import " + quoted() + ";\n";
        for (int i = 0; i < rules; ++i)
            css += "a::before { content: \"url(x)\"; b: url(" + quoted() + ") }\n";
        return css;
    }

    std::string page()
    {
        std::string html = "<!doctype html>\n<html><head><meta charset=utf-8><title><a href=gone></title>";
        if (m_random.bounded(6) == 0)
            html += one(
                {"<base href=/a/>", "<base href=../>", "<base href='http://other.org/'>", "<base target=x>"});
        html += "<style>" + sheet(2) + "</style></head><body id=\"there\"><!-- <a href=gone> -->\n";
        for (int i = 0; i < 25; ++i) {
            const std::string opening =
                one({"a href", "img src", "img alt='a > b' src", "A HREF ", "form action", "video poster",
                     "iframe src", "object data", "td background", "q cite", "p href", "svg><use xlink:href",
                     "script src", "link rel=stylesheet href", "a href=x.png href"});
            const std::string name = opening.substr(0, opening.find_first_of(" >"));
            html += (name == "td" ? "<table><tr>" : "") + ("<" + opening) + "=" + quoted() + ">";
            html += name == "script" ? "'<a href=gone>'" : "";
            html +=
                (name == "svg" ? "</use>" : "") + ("</" + name) + ">" + (name == "td" ? "</table>\n" : "\n");
        }
        html += "<img srcset=\"a/x.png 1x, /gone.png 2x,../x.png, /a/X.png 3x\">";
        html +=
            "<map name=there></map><img usemap='#there'><img usemap=#gone><p style='b: url(\"/none.png\")'>";
        return html + "<textarea><a href=gone></textarea>";
    }

    QRandomGenerator m_random;
};

} // namespace

/// The reports against browserreader.py, which shares nothing with them.
class tst_browserreader final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (QProcess::execute(python, {QStringLiteral("-c"), QStringLiteral("import html5lib")}) != 0)
            QSKIP("no python3-html5lib");
    }

    void sampleSite_hasTheSameMissingLinks()
    {
        compare(fs::path(qEnvironmentVariable("LUMA_SOURCE_DIR").toStdString()) / "resources/sample-site");
    }

    // A part of it, unless LUMA_REAL_SITES is set: html5lib takes a minute for the whole.
    void realSite_hasTheSameMissingLinks()
    {
        const fs::path folder = "/usr/share/doc/postgresql-doc-15/html";
        if (!fs::exists(folder))
            QSKIP("no postgresql-doc-15");
        if (qEnvironmentVariableIsSet("LUMA_REAL_SITES")) {
            compare(folder);
            return;
        }
        const Site part;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            if (entry.path().filename().native().starts_with("app-"))
                fs::copy_file(entry.path(), part.at(entry.path().filename().native()));
        }
        compare(part.root());
    }

    void hostileSites_haveTheSameMissingLinks_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 3; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void hostileSites_haveTheSameMissingLinks()
    {
        QFETCH(quint32, seed);
        const Site site;
        HostileSite(seed).fill(site);
        compare(site.root());
    }
};

LUMA_TEST(tst_browserreader)

#include "tst_browserreader.moc"
