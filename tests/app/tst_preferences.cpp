// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences.h"
#include "tests/support/registry.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace luma;

class tst_preferences final : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;

    QString file() const { return m_folder->path() + QStringLiteral("/luma/luma.conf"); }

    static unsigned modeOf(const QString& path)
    {
        struct stat status = {};
        return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777U : 0U;
    }

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void file_isPrivateBeforeAnythingIsWritten()
    {
        const mode_t old = ::umask(0);
        Preferences preferences(file());
        QCOMPARE(modeOf(file()), 0600U);
        QCOMPARE(modeOf(m_folder->path() + QStringLiteral("/luma")), 0700U);
        preferences.setValue(Preferences::sitesArrayData, QByteArray("secret"));
        QVERIFY(preferences.save());
        ::umask(old);
        QCOMPARE(modeOf(file()), 0600U);
    }

    void writtenByHand_isClosedToOthersAndReadWithItsCommas_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("quoted") << QByteArray("[General]\nExcludedFolders=\"a, b\"\n");
        QTest::newRow("not quoted") << QByteArray("[General]\nExcludedFolders=a, b\n");
    }
    void writtenByHand_isClosedToOthersAndReadWithItsCommas()
    {
        QFETCH(QByteArray, text);
        QVERIFY(QDir().mkpath(m_folder->path() + QStringLiteral("/luma")));
        QFile existing(file());
        QVERIFY(existing.open(QFile::WriteOnly));
        existing.write(text);
        existing.close();
        QVERIFY(existing.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                        QFile::ReadOther));
        const Preferences preferences(file());
        QCOMPARE(modeOf(file()), 0600U);
        QCOMPARE(preferences.excludedFolderNames(), QStringLiteral("a, b"));
    }

    void initialValue_countsOnlyWhileNothingIsStored()
    {
        const QVariantMap initial = {{Preferences::excludedFolders, QStringLiteral("folder1, folder2")}};
        Preferences preferences(file(), initial);
        QCOMPARE(preferences.excludedFolderNames(), QStringLiteral("folder1, folder2"));
        preferences.setValue(Preferences::excludedFolders, QString());
        QVERIFY(preferences.save());
        QCOMPARE(Preferences(file(), initial).excludedFolderNames(), QString());
    }

    void values_comeBackAsTheyWere_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("data") << QVariant(QByteArray("\0\xff\n\"%;=@", 8));
        QTest::newRow("text with commas") << QVariant(QStringLiteral("a, \"b\"; ü, @c"));
        QTest::newRow("dictionary") << QVariant(
            QVariantMap{{QStringLiteral("destinationDict"),
                         QVariantMap{{QStringLiteral("autoconnect"), qlonglong{1}},
                                     {QStringLiteral("sshPortNo"), QStringLiteral("22")}}}});
    }
    void values_comeBackAsTheyWere()
    {
        QFETCH(QVariant, value);
        Preferences preferences(file());
        preferences.setValue(Preferences::siteTemplate, value);
        QVERIFY(preferences.save());
        const QVariant back = Preferences(file()).value(Preferences::siteTemplate);
        QCOMPARE(back.typeId(), value.typeId());
        QCOMPARE(back, value);
    }

    void unwritableFolder_isAnError()
    {
        if (::geteuid() == 0)
            QSKIP("root writes everywhere");
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        Preferences preferences(file());
        preferences.setValue(Preferences::excludedFolders, QStringLiteral("x"));
        QVERIFY(!preferences.save());
    }
};

LUMA_TEST(tst_preferences)
#include "tst_preferences.moc"
