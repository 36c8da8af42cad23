// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/program.h"
#include "app/sitelistwindow.h"
#include "desktop/windowregistry.h"
#include "editor/htmldocument.h"
#include "site/haldendoc.h"
#include "tests/support/registry.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
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

    void publishedPage_isListedInItsSitesWindow()
    {
        const std::string folder = m_folder.path().toStdString();
        for (const char* name : {"a", "b"})
            QVERIFY(QDir(m_folder.path()).mkpath(name));
        QFile page(m_folder.filePath("a/p.html"));
        QVERIFY(page.open(QIODevice::WriteOnly) && page.write("<p>one") > 0 && page.flush());
        const auto program = launched();
        QVERIFY(program->launch(readCommandLine({folder + "/a", folder + "/b"})));
        QVERIFY(program->launch(readCommandLine({folder + "/a/p.html"})));
        auto* const window = qobject_cast<HTMLDocument*>(program->documents().windowOf(folder + "/a/p.html"));
        QVERIFY(window);
        emit window->publishRequested(folder + "/a/p.html");
        const QLabel* count = nullptr;
        for (QWidget* open : WindowRegistry::instance().windows()) {
            if (qobject_cast<HaldenDoc*>(open))
                count = open->findChild<QLabel*>("syncCount");
        }
        QVERIFY(count);
        QTRY_VERIFY2(count->text().startsWith("1 of 1 selected"), qPrintable(count->text()));
        for (QWidget* open : WindowRegistry::instance().windows())
            open->close();
        QTRY_VERIFY(WindowRegistry::instance().windows().size() <= 1); // the list's
    }
};

LUMA_TEST(tst_program)
#include "tst_program.moc"
