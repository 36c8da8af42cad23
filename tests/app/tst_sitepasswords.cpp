// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/lumaappdelegate.h"
#include "app/sitelistwindow.h"
#include "app/sitetemplate.h"
#include "browser/endpoint.h"
#include "site/sitearchive.h"
#include "tests/support/registry.h"

#include <QAbstractButton>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QLabel>
#include <QListView>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace luma;

namespace {

const QString serviceName = "org.freedesktop.secrets";
const QString servicePath = "/org/freedesktop/secrets";

// Takes every call and answers none.
class SilentService final : public QDBusVirtualObject
{
public:
    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override
    {
        message.setDelayedReply(true);
        ++calls;
        return true;
    }
    int calls = 0;
};

} // namespace

/// The list of sites with a real keyring, on the private session bus.
class tst_sitepasswords final : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_keyring;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<LUMAAppDelegate> m_delegate;
    QList<SiteList::Record> m_shown;

    QString file() const { return m_folder->filePath("luma.conf"); }
    static QDBusConnectionInterface* bus() { return QDBusConnection::sessionBus().interface(); }

    void startKeyring()
    {
        m_keyring = std::make_unique<QProcess>();
        m_keyring->setStandardOutputFile(QProcess::nullDevice());
        m_keyring->start("gnome-keyring-daemon", {"--foreground", "--unlock", "--components=secrets"});
        QVERIFY(m_keyring->waitForStarted());
        m_keyring->write("throw-away");
        m_keyring->closeWriteChannel();
        QTRY_VERIFY2(bus()->isServiceRegistered(serviceName), "the keyring does not appear on the bus");
    }
    void stopKeyring()
    {
        if (!m_keyring)
            return;
        m_keyring->terminate();
        QVERIFY(m_keyring->waitForFinished());
        m_keyring.reset();
        QTRY_VERIFY2(!bus()->isServiceRegistered(serviceName), "the keyring's name stays on the bus");
    }
    static void lockKeyring()
    {
        QDBusInterface service(serviceName, servicePath, "org.freedesktop.Secret.Service");
        const auto answer = service.call(
            "Lock", QVariant::fromValue(QList{QDBusObjectPath(servicePath + "/collection/login")}));
        QVERIFY2(answer.type() == QDBusMessage::ReplyMessage, qPrintable(answer.errorMessage()));
    }

    void launch()
    {
        m_delegate.reset();
        m_preferences = std::make_unique<Preferences>(file(), LUMAAppDelegate::initialValues());
        m_delegate = std::make_unique<LUMAAppDelegate>(
            *m_preferences,
            LUMAAppDelegate::Services{[](const std::vector<std::string>&) { return std::string(); },
                                      [this](const SiteList::Record& record) { m_shown += record; },
                                      [](const QUrl&) { return true; }, std::make_shared<SecretStore>()});
        m_delegate->applicationDidFinishLaunching();
        m_delegate->siteListWindow().show();
    }
    void launchWith(const QStringList& passwords)
    {
        QList<QVariantMap> records;
        for (const QString& password : passwords) {
            QVariantMap record = siteTemplate();
            QVariantMap destination = record["destinationDict"].toMap();
            destination[endpoint::password] = password;
            record["destinationDict"] = destination;
            records += record;
        }
        Preferences before(file());
        before.setValue(Preferences::sitesArrayData, archiveSites(records));
        QVERIFY(before.save());
        launch();
    }

    ObservedDictionary& destination(int row = 0) const
    {
        return *m_delegate->sites().record(row)->destinationDict();
    }
    QString password(int row = 0) const { return destination(row).string(endpoint::password); }
    void type(const QString& text, int row = 0) const { destination(row).setValue(endpoint::password, text); }

    // Of the stored records; a record that was not stored is "-".
    QStringList passwordsInTheFile() const
    {
        QStringList found;
        const auto records =
            unarchiveSites(Preferences(file()).value(Preferences::sitesArrayData).toByteArray());
        for (const QVariantMap& record : records ? *records : QList<QVariantMap>())
            found += record["destinationDict"].toMap().value(endpoint::password, "-").toString();
        return found;
    }
    // The number of LUMA's items in the keyring.
    static int secretsInTheKeyring()
    {
        QDBusInterface keyring(serviceName, servicePath + "/collection/login",
                               "org.freedesktop.Secret.Collection");
        return static_cast<int>(keyring.property("Items").value<QList<QDBusObjectPath>>().size());
    }

private slots:
    void initTestCase()
    {
        if (!qEnvironmentVariableIsSet("LUMA_PRIVATE_SESSION"))
            QSKIP("not in a session of its own (scripts/private-session)");
        if (QStandardPaths::findExecutable("gnome-keyring-daemon").isEmpty())
            QSKIP("gnome-keyring is not installed");
    }
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_shown.clear();
        startKeyring();
    }
    void cleanup()
    {
        m_delegate.reset();
        stopKeyring();
    }

    void typedPassword_goesToTheKeyringAndComesBack()
    {
        const int before = secretsInTheKeyring();
        launchWith({"", ""});
        type("grün ' \"%");
        QTRY_COMPARE(secretsInTheKeyring(), before + 1);
        QTRY_VERIFY(!destination().string(endpoint::passwordID).isEmpty());
        QCOMPARE(passwordsInTheFile(), (QStringList{"", ""}));
        type("second");
        QVERIFY(m_delegate->applicationWillTerminate());
        launch();
        QTRY_COMPARE(password(), QString("second"));
        QTRY_COMPARE(passwordsInTheFile(), (QStringList{"", ""}));
        launch();
        QTRY_COMPARE(password(), QString("second"));
        type("");
        QTRY_COMPARE(secretsInTheKeyring(), before);
        launch();
        QCOMPARE(password(), QString());
    }

    void passwordsInTheFile_moveOver()
    {
        launchWith({"one", "", "three"});
        QTRY_COMPARE(passwordsInTheFile(), (QStringList{"", "", ""}));
        launch();
        QTRY_COMPARE(password(0), QString("one"));
        QTRY_COMPARE(password(2), QString("three"));
        QVERIFY(!Preferences(file()).value("sitesArrayDataReplaced").isValid());
    }

    // Nobody answers the desktop's question here, which counts as a refusal.
    void lockedKeyring_losesNothing()
    {
        launchWith({"kept", ""});
        QTRY_COMPARE(passwordsInTheFile(), (QStringList{"", ""}));
        lockKeyring();
        launch();
        type("typed while locked", 1);
        QTRY_COMPARE(passwordsInTheFile(), (QStringList{"", "typed while locked"}));
        m_delegate->siteListWindow().select(0);
        m_delegate->handleDoubleClick();
        m_delegate->handleDoubleClick();
        QTRY_COMPARE(m_shown.size(), 1);
        QCOMPARE(password(), QString());
        QVERIFY(m_delegate->applicationWillTerminate());
        m_delegate.reset();
        stopKeyring();
        startKeyring();
        launch();
        QTRY_COMPARE(password(0), QString("kept"));
        QTRY_COMPARE(passwordsInTheFile(), (QStringList{"", ""}));
        QCOMPARE(password(1), QString("typed while locked"));
    }

    void siteIsOpenedWithItsPassword()
    {
        launchWith({"secret"});
        QTRY_COMPARE(passwordsInTheFile(), QStringList{""});
        launch();
        m_delegate->handleDoubleClick();
        QTRY_COMPARE(m_shown.size(), 1);
        QCOMPARE(m_shown[0]->destinationDict()->string(endpoint::password), QString("secret"));
        QVERIFY(!m_delegate->siteListWindow().findChild<QLabel*>("noticeLabel")->isVisible());
    }

    void removedSite_takesItsPasswordAlongAndBack()
    {
        const int before = secretsInTheKeyring();
        launchWith({"gone", "stays"});
        QTRY_COMPARE(secretsInTheKeyring(), before + 2);
        QTRY_COMPARE(passwordsInTheFile(), (QStringList{"", ""}));
        m_delegate->siteListWindow().select(0);
        m_delegate->remove();
        m_delegate->siteListWindow().findChild<QMessageBox*>("removeSheet")->buttons().constFirst()->click();
        QTRY_COMPARE(secretsInTheKeyring(), before + 1);
        m_delegate->undo();
        QTRY_COMPARE(secretsInTheKeyring(), before + 2);
        QTRY_COMPARE(passwordsInTheFile(), (QStringList{"", ""}));
        launch();
        QTRY_COMPARE(password(0), QString("gone"));
        QTRY_COMPARE(password(1), QString("stays"));
    }

    void silentService_neitherBlocksNorLoses()
    {
        stopKeyring();
        SilentService silent;
        QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "silent");
        QVERIFY(other.registerVirtualObject(servicePath, &silent, QDBusConnection::SubPath));
        QVERIFY(other.registerService(serviceName));
        launchWith({""});
        type("not lost");
        QTRY_COMPARE(passwordsInTheFile(), QStringList{"not lost"});
        QTRY_VERIFY2(silent.calls > 0, "the service is never asked");
        m_delegate->handleDoubleClick();
        QCOMPARE(m_shown.size(), 1);
        type("at quit");
        QVERIFY(m_delegate->applicationWillTerminate());
        m_delegate.reset();
        QCOMPARE(passwordsInTheFile(), QStringList{"at quit"});
        QVERIFY(other.unregisterService(serviceName));
        QDBusConnection::disconnectFromBus("silent");
    }
};

LUMA_TEST(tst_sitepasswords)
#include "tst_sitepasswords.moc"
