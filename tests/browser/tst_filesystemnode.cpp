// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/filesystemnode.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QTest>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace luma;

class tst_filesystemnode final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::Site> m_site;
    fs::path at(std::string_view name) const { return m_site->at(name); }
    void put(std::string_view name) const { m_site->put(name); }

    static std::vector<std::string> names(FileSystemNode& node)
    {
        std::vector<std::string> all;
        for (const FileSystemNodePointer& child : node.children())
            all.push_back(child->name());
        return all;
    }
    using Names = std::vector<std::string>;

private slots:
    void init() { m_site = std::make_unique<test::Site>(); }

    void children_areSortedWithoutCaseAndWithoutHiddenOnes()
    {
        for (const char* name :
             {".htaccess", ".luma-a1B2c3", "b.html", "A.html", "\xc3\x84pfel.html", "a.HTML"})
            put(name);
        fs::create_directory(at("Assets"));
        FileSystemNode node(at(""));
        QCOMPARE(names(node), (Names{"A.html", "a.HTML", "Assets", "b.html", "\xc3\x84pfel.html"}));
    }

    void children_areListedAgainOnlyWhenDirty()
    {
        FileSystemNode gone(at("gone"));
        QVERIFY(!gone.fileProperties() && gone.displayName().isEmpty());
        QVERIFY(gone.children().empty() && gone.isUnreadable());
        FileSystemNode node(at(""));
        QCOMPARE(node.children().size(), std::size_t{0});
        put("new.html");
        QCOMPARE(node.children().size(), std::size_t{0});
        node.childrenDirty = true;
        QCOMPARE(names(node), Names{"new.html"});
    }

    void leaf_isWhatDoesNotOpenAsAFolder_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("leaf");
        QTest::newRow("folder") << QByteArray("images") << false;
        QTest::newRow("folder with an extension") << QByteArray("images.old") << false;
        QTest::newRow("package") << QByteArray("Tool.app") << true;
        QTest::newRow("package, upper case") << QByteArray("Tool.APP") << true;
        QTest::newRow("only an extension") << QByteArray("app") << false;
    }
    void leaf_isWhatDoesNotOpenAsAFolder()
    {
        QFETCH(QByteArray, name);
        fs::create_directory(at(name.toStdString()));
        const FileSystemNode node(at(name.toStdString()));
        QVERIFY(node.isDirectory());
        QTEST(node.isLeaf(), "leaf");
    }

    void symbolicLink_isALeafSoThatACircleEnds()
    {
        fs::create_directory_symlink(at(""), at("circle"));
        fs::create_symlink("/nowhere", at("dangling"));
        FileSystemNode node(at(""));
        QCOMPARE(names(node), (Names{"circle", "dangling"}));
        QVERIFY(node.children()[0]->isLeaf());
        QVERIFY(node.children()[1]->isLeaf());
    }

    void label_isReadFromTheTags()
    {
        put("page.html");
        const std::string tags = "work, Red";
        if (::setxattr(at("page.html").c_str(), "user.xdg.tags", tags.data(), tags.size(), 0) != 0)
            QSKIP("the temporary folder's file system keeps no extended attributes");
        FileSystemNode node(at(""));
        QCOMPARE(node.children()[0]->labelColor(), LabelColor::Red);
    }

    void rename_isRefusedAndNothingIsLost_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"", ".", "..", "a/b", "taken.html", "../up.html"})
            QTest::newRow(name) << QString::fromLatin1(name);
        QTest::newRow("too long") << QString(300, QLatin1Char('x'));
        QTest::newRow("nul") << QString(QChar(0));
    }
    void rename_isRefusedAndNothingIsLost()
    {
        QFETCH(QString, name);
        put("index.html");
        put("taken.html");
        FileSystemNode node(at("index.html"));
        QVERIFY(!node.setDisplayName(name));
        QCOMPARE(node.url(), at("index.html"));
        FileSystemNode folder(at(""));
        QCOMPARE(names(folder), (Names{"index.html", "taken.html"}));
    }

    void oddNames_areShownSanelyAndStayOperable_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("shown");
        QTest::newRow("plain") << QByteArray("index.html") << QStringLiteral("index.html");
        QTest::newRow("not UTF-8") << QByteArray("caf\xe9.html") << QString::fromUtf8("caf\xef\xbf\xbd.html");
        QTest::newRow("newline") << QByteArray("a\nb.html") << QStringLiteral("a\\nb.html");
        QTest::newRow("escape") << QByteArray("\x1b[31m") << QStringLiteral("\\x1b[31m");
    }
    void oddNames_areShownSanelyAndStayOperable()
    {
        QFETCH(QByteArray, name);
        put(name.toStdString());
        FileSystemNode folder(at(""));
        const FileSystemNodePointer node = folder.children().at(0);
        QTEST(node->displayName(), "shown");
        QVERIFY(node->setDisplayName(QStringLiteral("plain.html")));
        QCOMPARE(node->url(), at("plain.html"));
        QCOMPARE(node->displayName(), QStringLiteral("plain.html"));
        QVERIFY(fs::exists(at("plain.html")) && !fs::exists(at(name.toStdString())));
    }

    void unreadableFolder_isEmptyAndNotRetried()
    {
        if (::geteuid() == 0)
            QSKIP("root reads every folder");
        fs::create_directory(at("closed"));
        fs::permissions(at("closed"), fs::perms::none);
        FileSystemNode node(at("closed"));
        QVERIFY(node.children().empty());
        QVERIFY(node.isUnreadable());
        QVERIFY(!node.childrenDirty);
        fs::permissions(at("closed"), fs::perms::owner_all);
    }
};

LUMA_TEST(tst_filesystemnode)
#include "tst_filesystemnode.moc"
