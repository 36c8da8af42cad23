// SPDX-License-Identifier: GPL-3.0-or-later
#include "mounts/mounttable.h"
#include "mounts/shareurl.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

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
        const test::Rows<std::string, std::string, std::string> row("url", "user", "folder");
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
        QFETCH(std::string, url);
        QFETCH(std::string, user);
        QTEST(findKernelMount(parseMountTable(table), url, user).value_or("").string(), "folder");
    }

    void shareUrlForUser_namesTheAccountOnce_data()
    {
        const test::Rows<std::string, std::string, std::string> row("url", "user", "expected");
        row("plain", "sftp://h:22//a@b", "bob", "sftp://bob@h:22//a@b");
        row("escaped", "dav://h/", "a@b:c/", "dav://a%40b%3Ac%2F@h/");
        row("domain", "smb://h/s", "D\\bob", "smb://D;bob@h/s");
        row("backslash elsewhere", "ftp://h/", "D\\b", "ftp://D%5Cb@h/");
        row("named already", "smb://eve@h/s", "bob", "smb://eve@h/s");
        row("nobody", "smb://h/s", "", "smb://h/s");
    }
    void shareUrlForUser_namesTheAccountOnce()
    {
        QFETCH(std::string, url);
        QFETCH(std::string, user);
        QTEST(shareUrlForUser(url, user), "expected");
    }
};

LUMA_TEST(tst_mounttable)
#include "tst_mounttable.moc"
