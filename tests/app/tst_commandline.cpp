// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commandline.h"
#include "app/transientrecord.h"
#include "browser/endpoint.h"
#include "tests/support/registry.h"

#include <QTemporaryDir>
#include <QTest>

#include <fstream>

namespace fs = std::filesystem;
using namespace luma;

class tst_commandline final : public QObject
{
    Q_OBJECT

    using Request = CommandLine::Request;

private slots:
    void arguments_areUnderstood_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Request>("request");
        QTest::newRow("none") << QStringList() << Request::SiteList;
        QTest::newRow("two folders") << QStringList{QStringLiteral("a"), QStringLiteral("b")}
                                     << Request::Folders;
        QTest::newRow("dash folder") << QStringList{QStringLiteral("--"), QStringLiteral("-c"),
                                                    QStringLiteral("b")}
                                     << Request::Folders;
        QTest::newRow("page") << QStringList{QStringLiteral("page.html")} << Request::Page;
        QTest::newRow("help") << QStringList{QStringLiteral("a"), QStringLiteral("--help")} << Request::Help;
        QTest::newRow("version") << QStringList{QStringLiteral("--version")} << Request::Version;
        QTest::newRow("one folder") << QStringList{QStringLiteral("a")} << Request::Unusable;
        QTest::newRow("same folder twice")
            << QStringList{QStringLiteral("a"), QStringLiteral("b/../a")} << Request::Unusable;
        QTest::newRow("no such folder")
            << QStringList{QStringLiteral("a"), QStringLiteral("gone")} << Request::Unusable;
        QTest::newRow("no such page") << QStringList{QStringLiteral("gone.html")} << Request::Unusable;
        QTest::newRow("unknown option") << QStringList{QStringLiteral("--fast")} << Request::Unusable;
        QTest::newRow("three") << QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a")}
                               << Request::Unusable;
    }
    void arguments_areUnderstood()
    {
        QFETCH(QStringList, arguments);
        QFETCH(Request, request);
        const QTemporaryDir folder;
        for (const char* name : {"a", "b", "-c"})
            fs::create_directory(fs::path(folder.path().toStdString()) / name);
        std::ofstream(fs::path(folder.path().toStdString()) / "page.html") << "<p>";
        const fs::path before = fs::current_path();
        fs::current_path(folder.path().toStdString());
        std::vector<std::string> given;
        for (const QString& argument : arguments)
            given.push_back(argument.toStdString());
        const CommandLine line = readCommandLine(given);
        fs::current_path(before);
        QVERIFY(line.request == request);
        QCOMPARE(line.message.empty(), request != Request::Unusable);
        QVERIFY(request != Request::Folders ||
                (line.source.is_absolute() && line.destination.filename() == "b"));
    }

    void transientRecord_namesTwoLocalFolders()
    {
        const auto record = transientRecord("/srv/my site", "/srv/größe");
        QVERIFY(record);
        const QVariantMap destination = record->value(QStringLiteral("destinationDict")).toMap();
        QCOMPARE(destination.value(endpoint::path), QVariant(QStringLiteral("/srv/größe")));
        QCOMPARE(destination.value(endpoint::protocol), QVariant(QStringLiteral("file://")));
        QCOMPARE(destination.value(endpoint::autoconnect), QVariant(qlonglong{1}));
        QVERIFY(!transientRecord("/srv/a", "/srv/\xff"));
    }
};

LUMA_TEST(tst_commandline)
#include "tst_commandline.moc"
