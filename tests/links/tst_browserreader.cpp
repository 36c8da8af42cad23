// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/ascii.h"
#include "links/browserreports.h"
#include "tests/links/hostilesite.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QProcess>
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
        test::HostileSite(seed).fill(site);
        compare(site.root());
    }
};

LUMA_TEST(tst_browserreader)

#include "tst_browserreader.moc"
