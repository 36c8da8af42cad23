// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/documentcontroller.h"
#include "tests/support/registry.h"

#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <fstream>

namespace fs = std::filesystem;
using namespace luma;

class tst_documentcontroller final : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::vector<fs::path> m_opened;
    std::vector<fs::path> m_siteFolders;
    int m_windowsMade = 0;
    std::unique_ptr<DocumentController> m_controller;

    fs::path at(const char* name) const { return fs::path(m_folder->path().toStdString()) / name; }

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_opened.clear();
        m_siteFolders.clear();
        m_windowsMade = 0;
        for (const char* name : {"page.html", "photo.png", "PAGE.HTML", "\xff.txt"})
            std::ofstream(at(name)) << name;
        fs::create_symlink("page.html", at("again.html"));
        m_controller = std::make_unique<DocumentController>(
            [this](const fs::path& file) {
                m_opened.push_back(file);
                return true;
            },
            [this](const fs::path&, const fs::path& siteFolder, QWidget* open) {
                m_siteFolders.push_back(siteFolder);
                m_windowsMade += open ? 0 : 1;
                return open ? open : new QWidget;
            });
    }

    void page_hasOneWindowHoweverItIsNamed()
    {
        QVERIFY(m_controller->open(at("page.html"), "/site"));
        QWidget* window = m_controller->windowOf(at("page.html"));
        QVERIFY(window);
        QCOMPARE(m_controller->windowOf(at("./again.html")), window);
        QVERIFY(m_controller->open(at("again.html"), "/other site"));
        QCOMPARE(m_windowsMade, 1);
        QCOMPARE(m_siteFolders.back(), fs::path("/other site"));
        delete window;
        QVERIFY(!m_controller->windowOf(at("page.html")));
        QVERIFY(m_controller->open(at("page.html")));
        QCOMPARE(m_windowsMade, 2);
        delete m_controller->windowOf(at("page.html"));
    }

    void otherFile_goesToTheDesktop()
    {
        for (const char* name : {"photo.png", "PAGE.HTML", "\xff.txt"}) {
            QVERIFY(m_controller->open(at(name)));
            QCOMPARE(m_opened.back(), at(name));
            QVERIFY(!m_controller->windowOf(at(name)));
        }
        QVERIFY(!m_controller->open(at("gone.html")));
        QCOMPARE(m_windowsMade, 0);
    }
};

LUMA_TEST(tst_documentcontroller)
#include "tst_documentcontroller.moc"
