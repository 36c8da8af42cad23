// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/displaytext.h"
#include "browser/endpoint.h"
#include "browser/fileoperations.h"
#include "browser/folderlisting.h"
#include "browser/mountstep.h"
#include "browser/transformers.h"
#include "mounts/volumemounter.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

namespace fs = std::filesystem;
using namespace luma;
using namespace Qt::StringLiterals;

namespace {

class FakeMounter final : public VolumeMounter
{
public:
    std::optional<fs::path> mounted;
    std::optional<fs::path> existing;
    QStringList asked;

    Result<fs::path> mount(const QString& url, const QString& user, const QString& password,
                           const std::function<bool()>& /*isWanted*/) override
    {
        asked += url + QLatin1Char('|') + user + QLatin1Char('|') + password;
        return mounted ? Result<fs::path>(*mounted) : Error{"refused"};
    }
    std::optional<fs::path> existingMount(const QString& /*url*/) override { return existing; }
    void unmount(const fs::path& /*mountPoint*/) override {}
};

const ConnectionRequest shareRequest = {u"smb://"_s, u"host"_s, u"Web"_s, u"/docs"_s, u"anna"_s, u"secret"_s};

} // namespace

/// The pane's plain functions, which need no screen.
class tst_panerules final : public QObject
{
    Q_OBJECT

private slots:
    void mountURL_isComposed_data()
    {
        QTest::addColumn<QStringList>("parts");
        QTest::addColumn<QString>("url");
        QTest::newRow("blanks") << QStringList{u"smb://"_s, u"example host"_s, u"Web Site"_s, u"/docs"_s}
                                << u"smb://example%20host/Web%20Site/docs"_s;
        QTest::newRow("server only") << QStringList{u"smb://"_s, u"host"_s, u""_s, u""_s} << u"smb://host/"_s;
        QTest::newRow("port") << QStringList{u"smb://"_s, u"127.0.0.1:4450"_s, u"v"_s, u""_s}
                              << u"smb://127.0.0.1:4450/v"_s;
        QTest::newRow("no volume") << QStringList{u"FTP"_s, u"h"_s, u"v"_s, u"/p"_s} << u"FTPh//p"_s;
        QTest::newRow("no path") << QStringList{u"SMB"_s, u"h"_s, u"v"_s, u"/p"_s} << u"SMBh/v"_s;
        QTest::newRow("reserved") << QStringList{u"davs://"_s, u"h"_s, u"50%"_s, u"/a?b#c\"<>[]^`{|}"_s}
                                  << u"davs://h/50%25/a%3Fb%23c%22%3C%3E%5B%5D%5E%60%7B%7C%7D"_s;
        QTest::newRow("not ASCII") << QStringList{u"smb://"_s, u"h"_s, QString::fromUtf8("B\xc3\xa4r"), u""_s}
                                   << u"smb://h/B%C3%A4r"_s;
        QTest::newRow("no Unicode") << QStringList{u"smb://"_s, u"h"_s, QString(QChar(0xd800)), u"/p"_s}
                                    << u"smb://h//p"_s;
    }
    void mountURL_isComposed()
    {
        QFETCH(QStringList, parts);
        QTEST(mountURL({parts[0], parts[1], parts[2], parts[3], {}, {}}), "url");
    }

    void sshPort_countsForSftp_data()
    {
        QTest::addColumn<QString>("protocol");
        QTest::addColumn<QString>("server");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("url");
        QTest::newRow("other") << u"sftp://"_s << u"h"_s << u"2222"_s << u"sftp://h:2222//p"_s;
        QTest::newRow("usual") << u"sftp://"_s << u"h"_s << u"22"_s << u"sftp://h//p"_s;
        QTest::newRow("none") << u"sftp://"_s << u"h"_s << QString() << u"sftp://h//p"_s;
        QTest::newRow("no number") << u"sftp://"_s << u"h"_s << u"22/../x"_s << u"sftp://h//p"_s;
        QTest::newRow("too large") << u"sftp://"_s << u"h"_s << u"70000"_s << u"sftp://h//p"_s;
        QTest::newRow("server has one") << u"sftp://"_s << u"h:23"_s << u"2222"_s << u"sftp://h:23//p"_s;
        QTest::newRow("other protocol") << u"smb://"_s << u"h"_s << u"2222"_s << u"smb://h//p"_s;
    }
    void sshPort_countsForSftp()
    {
        QFETCH(QString, protocol);
        QFETCH(QString, server);
        QFETCH(QString, port);
        QTEST(mountURL({protocol, server, {}, u"/p"_s, {}, {}, port}), "url");
    }

    void mountStep_usesTheShareOrItsExistingMount()
    {
        FakeMounter mounter;
        mounter.mounted = "/mnt/web";
        QCOMPARE(*mountStep(shareRequest, mounter, [] { return true; }).folder, fs::path("/mnt/web"));
        QCOMPARE(mounter.asked, QStringList{u"smb://host/Web/docs|anna|secret"_s});
        mounter.mounted.reset();
        mounter.existing = "/mnt/there";
        QCOMPARE(mountStep(shareRequest, mounter, [] { return true; }).mountPath, fs::path("/mnt/there"));
        mounter.existing.reset();
        const MountResult failed = mountStep(shareRequest, mounter, [] { return true; });
        QVERIFY(!failed.folder);
        QVERIFY(failed.mountPath.empty());
    }

    void mountStep_wantsALocalFolderToExist()
    {
        FakeMounter mounter;
        const test::Site site;
        const QString folder = QString::fromStdString(site.root());
        ConnectionRequest request;
        request.protocol = endpoint::fileProtocol;
        request.path = folder;
        QVERIFY(mountStep(request, mounter, [] { return true; }).folder);
        request.path = folder + u"/gone"_s;
        const MountResult failed = mountStep(request, mounter, [] { return true; });
        QVERIFY(!failed.folder);
        QCOMPARE(failed.mountPath, site.at("gone"));
        request.path.clear();
        QVERIFY(!mountStep(request, mounter, [] { return true; }).folder);
        QVERIFY(mounter.asked.isEmpty());
    }

    void transformers_answerByName()
    {
        const auto connectTitle = Transformers::named(u"ConnectTransformer");
        QCOMPARE(connectTitle(QString()), QStringLiteral("Disconnect"));
        QCOMPARE(connectTitle(QVariant()), QStringLiteral("Connect"));
        const auto file = Transformers::named(u"FilePathTransformer");
        const auto share = Transformers::named(u"SMBPathTransformer");
        QCOMPARE(file(QStringLiteral("file://")) + share(QStringLiteral("smb://")), QStringLiteral("00"));
        for (const QVariant& other : {QVariant(QStringLiteral("File://")), QVariant(7), QVariant()})
            QCOMPARE(file(other) + share(other), QStringLiteral("11"));
        QVERIFY(!Transformers::named(u"NoTransformer"));
    }

    void duplicatePath_putsCopyBeforeTheExtension_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("copy");
        QTest::newRow("page") << QByteArray("/s/index.html") << QByteArray("/s/index copy.html");
        QTest::newRow("folder") << QByteArray("/s/images") << QByteArray("/s/images copy");
        QTest::newRow("two dots") << QByteArray("/s/a.tar.gz") << QByteArray("/s/a.tar copy.gz");
        QTest::newRow("dot at the end") << QByteArray("/s/end.") << QByteArray("/s/end. copy");
        QTest::newRow("bytes") << QByteArray("/s/\xff\n.js") << QByteArray("/s/\xff\n copy.js");
    }
    void duplicatePath_putsCopyBeforeTheExtension()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, copy);
        QCOMPARE(fileoperations::duplicatePath(name.toStdString()), fs::path(copy.toStdString()));
    }

    void operations_neverReplace()
    {
        const test::Site site({{"a.html", "new"}, {"a copy.html", "old"}});
        const fs::path root = site.root();
        QVERIFY(!fileoperations::duplicate(root / "a.html"));
        QCOMPARE(site.bytesOf("a copy.html"), std::string("old"));
        QCOMPARE(*fileoperations::newFolder(root), root / "untitled folder");
        QCOMPARE(*fileoperations::newFolder(root), root / "untitled folder 2");
        QVERIFY(!fileoperations::newFolder(root / "gone"));
    }

    void label_isTheFirstColourAmongTheTags()
    {
        QCOMPARE(labelColorFromTags("Gray"), LabelColor::Gray);
        QCOMPARE(labelColorFromTags("todo, Blue ,Red"), LabelColor::Blue);
        QCOMPARE(labelColorFromTags("Reddish,,"), LabelColor::None);
        QCOMPARE(labelColorFromTags(""), LabelColor::None);
    }
};

LUMA_TEST(tst_panerules)
#include "tst_panerules.moc"
