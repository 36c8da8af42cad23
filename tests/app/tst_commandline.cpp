// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commandline.h"
#include "app/sitetemplate.h"
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
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<Request>("request");
        QTest::newRow("none") << "" << Request::SiteList;
        QTest::newRow("two folders") << "a b" << Request::Folders;
        QTest::newRow("dash folder") << "-- -c b" << Request::Folders;
        QTest::newRow("page") << "page.html" << Request::Page;
        QTest::newRow("help") << "a --help" << Request::Help;
        QTest::newRow("version") << "--version" << Request::Version;
        QTest::newRow("one folder") << "a/" << Request::Item;
        QTest::newRow("style sheet") << "main.css" << Request::Item;
        QTest::newRow("same folder twice") << "a b/../a" << Request::Unusable;
        QTest::newRow("no such folder") << "a gone" << Request::Unusable;
        QTest::newRow("no such page") << "gone.html" << Request::Unusable;
        QTest::newRow("unknown option") << "--fast" << Request::Unusable;
        QTest::newRow("three") << "a b a" << Request::Unusable;
    }
    void arguments_areUnderstood()
    {
        QFETCH(QString, arguments);
        QFETCH(Request, request);
        const QTemporaryDir folder;
        for (const char* name : {"a", "b", "-c"})
            fs::create_directory(fs::path(folder.path().toStdString()) / name);
        std::ofstream(fs::path(folder.path().toStdString()) / "page.html") << "<p>";
        std::ofstream(fs::path(folder.path().toStdString()) / "main.css") << "p {}";
        const fs::path before = fs::current_path();
        fs::current_path(folder.path().toStdString());
        std::vector<std::string> given;
        for (const QString& argument : arguments.split(u' ', Qt::SkipEmptyParts))
            given.push_back(argument.toStdString());
        const CommandLine line = readCommandLine(given);
        fs::current_path(before);
        QVERIFY(line.request == request);
        QCOMPARE(line.message.empty(), request != Request::Unusable);
        QVERIFY(request != Request::Item || (line.item.is_absolute() && line.item.has_filename()));
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
