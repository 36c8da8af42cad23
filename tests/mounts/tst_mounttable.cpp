// SPDX-License-Identifier: GPL-3.0-or-later
#include "mounts/mounttable.h"
#include "mounts/shareurl.h"
#include "tests/support/registry.h"

#include <QTest>

using namespace luma;

class tst_mounttable final : public QObject
{
    Q_OBJECT

private:
    static constexpr std::string_view table =
        R"(22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw
90 22 0:50 / /mnt/web\040site rw shared:1 master:2 - cifs //NAS.local/Web\040Site rw,username=bob
91 22 0:51 /docs /mnt/docs rw - cifs //nas.local/Web\040Site/docs rw
92 22 0:52 / /srv/nfs rw - nfs4 files:/export/www rw
93 22 0:53 / /home/a/web\134x rw - fuse.sshfs bob@host:/var/www rw,user_id=0
94 22 0:54 / /home/a/own rw - fuse.sshfs bob@host: rw
95 22 0:55 / /mnt/percent rw - cifs //nas.local/100%25 rw
96 22 0:56 / /mnt/v6 rw - nfs4 [fe80::1]:/ rw
97 short line - x
)";

private slots:
    void parse_decodesTheKernelsEscapes()
    {
        const auto mounts = parseMountTable(table);
        QCOMPARE(mounts.size(), std::size_t{8});
        QCOMPARE(mounts[1].source, std::string("//NAS.local/Web Site"));
        QCOMPARE(mounts[1].mountPoint.string(), std::string("/mnt/web site"));
        QCOMPARE(mounts[4].mountPoint.string(), std::string("/home/a/web\\x"));
        QCOMPARE(mounts[2].root, std::string("/docs"));
        QVERIFY(!readMountTable().empty());
    }

    void find_comparesHostAndPath_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<QByteArray>("folder");
        const auto row = [](const char* name, const char* url, const char* user, const char* folder) {
            QTest::newRow(name) << QByteArray(url) << QByteArray(user) << QByteArray(folder);
        };
        row("cifs, blanks and case", "smb://nas.LOCAL/web%20site", "", "/mnt/web site");
        row("trailing slash", "smb://nas.local/Web%20Site/", "", "/mnt/web site");
        row("below the share", "smb://nas.local/Web%20Site/a/b%23c", "", "/mnt/web site/a/b#c");
        row("furthest wins", "smb://nas.local/Web%20Site/docs/x", "", "/mnt/docs/x");
        row("names end at a slash", "smb://nas.local/Web%20Site%202", "", "");
        row("folders keep their case", "smb://nas.local/Web%20Site/Docs", "", "/mnt/web site/Docs");
        row("no decoding of the source", "smb://nas.local/100%2525", "", "/mnt/percent");
        row("other host", "smb://nas/Web%20Site", "", "");
        row("above the mount", "nfs://files/export", "", "");
        row("nfs", "nfs://files//export/www/", "", "/srv/nfs");
        row("nfs case", "nfs://files/export/WWW", "", "");
        row("nfs v6", "nfs://[fe80::1]/a", "", "/mnt/v6/a");
        row("sshfs", "sftp://host//var/www/site", "", "/home/a/web\\x/site");
        row("sshfs, same user", "sftp://host/var/www", "bob", "/home/a/web\\x");
        row("sshfs, other user", "sftp://host/var/www", "eve", "");
        row("sshfs, login's own folder", "sftp://host/own", "", "");
        row("other protocol", "dav://nas.local/Web%20Site", "", "");
        row("no address", "smb:", "", "");
    }
    void find_comparesHostAndPath()
    {
        QFETCH(QByteArray, url);
        QFETCH(QByteArray, user);
        QFETCH(QByteArray, folder);
        const auto found = findKernelMount(parseMountTable(table), url.toStdString(), user.toStdString());
        QCOMPARE(QByteArray::fromStdString(found.value_or("").string()), folder);
    }

    void shareUrlForUser_namesTheAccountOnce_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("plain") << QByteArray("sftp://h:22//a@b") << QByteArray("bob")
                               << QByteArray("sftp://bob@h:22//a@b");
        QTest::newRow("escaped") << QByteArray("dav://h/") << QByteArray("a@b:c/")
                                 << QByteArray("dav://a%40b%3Ac%2F@h/");
        QTest::newRow("domain") << QByteArray("smb://h/s") << QByteArray("D\\bob")
                                << QByteArray("smb://D;bob@h/s");
        QTest::newRow("backslash elsewhere")
            << QByteArray("ftp://h/") << QByteArray("D\\b") << QByteArray("ftp://D%5Cb@h/");
        QTest::newRow("named already")
            << QByteArray("smb://eve@h/s") << QByteArray("bob") << QByteArray("smb://eve@h/s");
        QTest::newRow("nobody") << QByteArray("smb://h/s") << QByteArray() << QByteArray("smb://h/s");
    }
    void shareUrlForUser_namesTheAccountOnce()
    {
        QFETCH(QByteArray, url);
        QFETCH(QByteArray, user);
        QFETCH(QByteArray, expected);
        QCOMPARE(QByteArray::fromStdString(shareUrlForUser(url.toStdString(), user.toStdString())), expected);
    }

    void liesOnMount_endsAtNames()
    {
        QVERIFY(liesOnMount("/mnt/a", "/mnt/a"));
        QVERIFY(liesOnMount("/mnt/a/b", "/mnt/a/"));
        QVERIFY(liesOnMount("/mnt/a", "/"));
        QVERIFY(!liesOnMount("/mnt/ab", "/mnt/a"));
        QVERIFY(!liesOnMount("/mnt", "/mnt/a"));
        QVERIFY(!liesOnMount("/mnt", ""));
        QVERIFY(!liesOnMount("", "/mnt"));
    }
};

LUMA_TEST(tst_mounttable)
#include "tst_mounttable.moc"
