// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/program.h"
#include "app/sitelistwindow.h"
#include "tests/support/registry.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

using namespace luma;

class tst_program final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    // Without a shell, which would end the folder watchers of other programs.
    std::unique_ptr<Program> launched() const
    {
        return std::make_unique<Program>(m_folder.filePath(QStringLiteral("luma.conf")),
                                         [](const std::vector<std::string>&) { return std::string(); });
    }

private slots:
    void controlW_closesPanelsAndWindows()
    {
        const auto program = launched();
        QVERIFY(program->launch({}));
        SiteListWindow& list = program->delegate().siteListWindow();
        QDialog panel(&list);
        QLineEdit field(&panel);
        panel.open();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        QTest::keyClick(&field, Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!panel.isVisible());
        QVERIFY(list.isVisible());
        list.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&list));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_W, Qt::ControlModifier);
        QVERIFY(!list.isVisible());
    }
};

LUMA_TEST(tst_program)
#include "tst_program.moc"
