// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browser.h"
#include "browser/configpanel.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace luma;
using luma::test::PaneFixture;

class tst_configpanel final : public QObject
{
    Q_OBJECT

private slots:
    void fieldsAndRecord_areOne()
    {
        PaneFixture site;
        site.pane->configure();
        QTRY_VERIFY(site.find<ConfigPanel>("configPanel")->isVisible());
        auto* protocol = site.find<QComboBox>("theProtocol");
        protocol->setCurrentIndex(protocol->findText(QStringLiteral("smb://")));
        emit protocol->textActivated(QStringLiteral("smb://"));
        QTest::keyClicks(site.find<QLineEdit>("server"), QStringLiteral("host"));
        QTest::keyClicks(site.find<QLineEdit>("password"), QStringLiteral("pw"));
        QTest::mouseClick(site.find<QCheckBox>("autoconnect"), Qt::LeftButton);
        QCOMPARE(site.endpoint->string(endpoint::protocol), QStringLiteral("smb://"));
        QCOMPARE(site.endpoint->string(endpoint::server), QStringLiteral("host"));
        QCOMPARE(site.endpoint->integer(endpoint::autoconnect, 7), 0);
        QVERIFY(!site.endpoint->values().contains(endpoint::user));
        site.endpoint->setValue(endpoint::volume, QStringLiteral("Web"));
        QCOMPARE(site.find<QLineEdit>("volume")->text(), QStringLiteral("Web"));
        const ConnectionRequest request = site.find<ConfigPanel>("configPanel")->request();
        QCOMPARE(request.protocol, QStringLiteral("smb://"));
        QCOMPARE(request.password, QStringLiteral("pw"));
        test::screenshot(*site.find<ConfigPanel>("configPanel"), "settings-share");
    }

    void fields_followTheProtocol()
    {
        PaneFixture site;
        QVERIFY(!site.find<QLineEdit>("server")->isEnabled());
        QVERIFY(site.find<QToolButton>("chooseFolderButton")->isEnabled());
        site.endpoint->setValue(endpoint::protocol, QStringLiteral("sftp://"));
        QVERIFY(site.find<QLineEdit>("server")->isEnabled());
        QVERIFY(!site.find<QToolButton>("chooseFolderButton")->isEnabled());
        // What a record brings is kept, offered by us or not.
        site.endpoint->setValue(endpoint::protocol, QStringLiteral("gopher://"));
        QCOMPARE(site.find<QComboBox>("theProtocol")->currentText(), QStringLiteral("gopher://"));
        site.endpoint->setValue(endpoint::protocol, 7);
        QCOMPARE(site.find<ConfigPanel>("configPanel")->request().protocol, QString());
    }

    void password_isMaskedUntilShown()
    {
        PaneFixture site;
        site.pane->configure();
        auto* password = site.find<QLineEdit>("password");
        QCOMPARE(password->echoMode(), QLineEdit::Password);
        site.endpoint->setValue(endpoint::protocol, QStringLiteral("smb://"));
        QTest::mouseClick(site.find<QToolButton>("showPasswordButton"), Qt::LeftButton);
        QCOMPARE(password->echoMode(), QLineEdit::Normal);
        site.pane->closeSheet();
        QCOMPARE(password->echoMode(), QLineEdit::Password);
    }

    void chooser_setsThePath()
    {
        PaneFixture site;
        site.pane->configure();
        QTest::mouseClick(site.find<QToolButton>("chooseFolderButton"), Qt::LeftButton);
        QPointer<QFileDialog> chooser = site.find<QFileDialog>("folderChooser");
        QVERIFY(chooser);
        emit chooser->fileSelected(QString::fromStdString(site.at("css").string()));
        chooser->close();
        QCOMPARE(site.endpoint->string(endpoint::path), QString::fromStdString(site.at("css").string()));
    }

    void connectingFromTheSheet_closesIt()
    {
        PaneFixture site;
        site.pane->configure();
        auto* sheet = site.find<ConfigPanel>("configPanel");
        QTRY_VERIFY(sheet->isVisible());
        test::screenshot(*sheet, "settings-local");
        QTest::mouseClick(sheet->findChild<QPushButton*>(QStringLiteral("configConnectButton")),
                          Qt::LeftButton);
        QVERIFY(!sheet->isVisible());
        QTRY_VERIFY(site.pane->rootNode());
        // The sheet's button connects again; it never disconnects.
        site.pane->configure();
        QTest::mouseClick(sheet->findChild<QPushButton*>(QStringLiteral("closeSheetButton")), Qt::LeftButton);
        QVERIFY(!sheet->isVisible());
        QVERIFY(site.pane->rootNode());
    }

    void everyTabStop_hasAnAccessibleName()
    {
        PaneFixture site;
        site.pane->doConnect();
        QTRY_VERIFY(site.pane->rootNode());
        site.pane->browser().setPath({"css", "main.css"});
        for (QWidget* widget : site.window.findChildren<QWidget*>()) {
            if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible() || widget->focusProxy())
                continue;
            const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
            QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(),
                     qPrintable(widget->objectName()));
        }
    }
};

LUMA_TEST(tst_configpanel)
#include "tst_configpanel.moc"
