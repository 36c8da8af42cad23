// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/keytag.h"
#include "shell/quote.h"
#include "shell/sshcontroller.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QTest>

using namespace luma;

// Names in command lines.
class tst_quote final : public QObject
{
    Q_OBJECT

private slots:
    void plainName_changesOnlyInItsBlanks()
    {
        QCOMPARE(quotedForShell("My Page.html"), std::string("My\\ Page.html"));
        QCOMPARE(quotedForShell("old/A-b_c.d 1  2"), std::string("old/A-b_c.d\\ 1\\ \\ 2"));
    }

    void anyName_reachesTheProgramUnchanged_data()
    {
        QTest::addColumn<QByteArray>("name");
        QByteArray all;
        for (int byte = 1; byte < 256; ++byte) {
            const auto character = static_cast<char>(byte);
            all += character;
            QTest::addRow("byte %d", byte) << QByteArray(1, character);
            QTest::addRow("byte %d inside", byte) << "a" + QByteArray(3, character) + "b";
        }
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("every byte") << all;
        QTest::newRow("command") << QByteArray("$(touch x)`touch x`;touch x|touch x&touch x>x");
        QTest::newRow("home") << QByteArray("~root/*?[a-z]{a,b}!!");
        QTest::newRow("UTF-8") << QByteArray("gr\xc3\xbc\xc3\x9f e \xe2\x82\xac");
    }
    void anyName_reachesTheProgramUnchanged()
    {
        QFETCH(QByteArray, name);
        const std::string word = quotedForShell(name.toStdString());
        for (const char* shell : {"/bin/sh", "/bin/zsh"}) {
            const std::string seen = SSHController::unixShellWithResultAndArguments(
                {shell, "-c", "/usr/bin/printf '%s|' --exclude=" + word + " " + word});
            QCOMPARE(QByteArray::fromStdString(seen), "--exclude=" + name + "|" + name + "|");
        }
    }

    void keyTag_isTheCommentMadeSafe_data()
    {
        const test::Rows<QByteArray, QByteArray> row("key", "tag");
        row("usual", "ssh-rsa AAAA+/= root@my-host.local\n", "root@my-host.local");
        row("blanks", "ssh-rsa AAAA my key", "my_key");
        row("special", "ssh-rsa AAAA a/$b'\xff*", "a__b___");
        row("no comment", "ssh-rsa AAAA\n", "luma@desktop");
        row("no key", "", "luma@desktop");
        row("too long", "ssh-rsa AAAA " + QByteArray(300, 'x'), "luma@desktop");
    }
    void keyTag_isTheCommentMadeSafe()
    {
        QFETCH(QByteArray, key);
        QTEST(QByteArray::fromStdString(keyTag(key.toStdString())), "tag");
    }
};

LUMA_TEST(tst_quote)
#include "tst_quote.moc"
