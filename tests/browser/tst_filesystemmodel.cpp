// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/dragrecord.h"
#include "browser/filesystemmodel.h"
#include "browser/folderlisting.h"
#include "tests/support/registry.h"
#include "tests/support/site.h"

#include <QAbstractItemModelTester>
#include <QMimeData>
#include <QPersistentModelIndex>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

namespace fs = std::filesystem;
using namespace luma;
using namespace Qt::StringLiterals;

class tst_filesystemmodel final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::Site> m_site;
    std::unique_ptr<FileSystemModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;

    fs::path at(std::string_view name) const { return m_site->at(name); }
    void put(std::string_view name) const { m_site->put(name); }
    void show()
    {
        m_tester.reset();
        m_model = std::make_unique<FileSystemModel>();
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
        m_model->setRootNode(std::make_shared<FileSystemNode>(at("")));
    }
    QStringList names(const QModelIndex& folder = {}) const
    {
        QStringList all;
        for (int row = 0; row < m_model->rowCount(folder); ++row)
            all += m_model->index(row, 0, folder).data().toString();
        return all;
    }
    QModelIndex child(const char* name, const QModelIndex& folder = {}) const
    {
        return m_model->childNamed(folder, name);
    }

private slots:
    void init() { m_site = std::make_unique<test::Site>(); }
    void cleanup()
    {
        m_tester.reset();
        m_model.reset();
    }

    void refresh_tellsExactlyWhatCameAndWent()
    {
        for (const char* name : {"a.html", "c.html", "sub/x.html", "zone/z.html"})
            put(name);
        show();
        const QPersistentModelIndex kept = child("c.html");
        const QPersistentModelIndex inside = child("z.html", child("zone"));
        const QPersistentModelIndex gone = child("x.html", child("sub"));
        QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
        fs::remove(at("a.html"));
        fs::remove_all(at("sub"));
        put("b.html");
        put("zone/new.html");
        m_model->refresh({QModelIndex(), child("zone")});
        QCOMPARE(names(), (QStringList{u"b.html"_s, u"c.html"_s, u"zone"_s}));
        QCOMPARE(names(child("zone")), (QStringList{u"new.html"_s, u"z.html"_s}));
        QCOMPARE(kept.row(), 1);
        QCOMPARE(inside.data().toString(), QStringLiteral("z.html"));
        QVERIFY(!gone.isValid());
        QCOMPARE(reset.count(), 0);
    }

    void refresh_followsRandomChanges()
    {
        QRandomGenerator random(4711);
        show();
        for (int round = 0; round < 60; ++round) {
            for (int change = random.bounded(12); change >= 0; --change) {
                const std::string name =
                    (random.bounded(2) ? "f/n" : "n") + std::to_string(random.bounded(20));
                if (fs::exists(at(name)))
                    fs::remove_all(at(name));
                else if (random.bounded(3) == 0)
                    fs::create_directories(at(name));
                else
                    put(name);
            }
            m_model->refresh({QModelIndex(), child("f")});
            FileSystemNode fresh(at(""));
            QCOMPARE(m_model->rowCount(), static_cast<int>(fresh.children().size()));
            for (int row = 0; row < m_model->rowCount(); ++row)
                QCOMPARE(m_model->node(m_model->index(row, 0))->url(),
                         fresh.children().at(std::size_t(row))->url());
        }
    }

    void refresh_takesMoreChangesThanCanBeToldOneByOne()
    {
        for (int i = 0; i < 3000; ++i)
            put("n" + std::to_string(10000 + i));
        show();
        QCOMPARE(m_model->rowCount(), 3000);
        for (int i = 0; i < 3000; i += 2)
            fs::remove(at("n" + std::to_string(10000 + i)));
        m_model->refresh({QModelIndex()});
        QCOMPARE(m_model->rowCount(), 1500);
        QCOMPARE(names().first(), QStringLiteral("n10001"));
    }

    void refresh_seesAFileThatBecameAFolderAndARootThatIsGone()
    {
        put("thing");
        show();
        const QPersistentModelIndex file = child("thing");
        fs::remove(at("thing"));
        put("thing/inside.html");
        m_model->refresh({QModelIndex()});
        QVERIFY(!file.isValid());
        QCOMPARE(names(child("thing")), QStringList{u"inside.html"_s});
        fs::remove_all(at(""));
        m_model->refresh({QModelIndex()});
        QCOMPARE(m_model->rowCount(), 0);
    }

    void rename_movesTheRowAndTheFolderBelow()
    {
        for (const char* name : {"alpha/page.html", "beta.html", "gamma.html"})
            put(name);
        show();
        const QPersistentModelIndex folder = child("alpha");
        const QPersistentModelIndex page = child("page.html", folder);
        QSignalSpy renamed(m_model.get(), &FileSystemModel::renamed);
        QVERIFY(m_model->setData(folder, QStringLiteral("Delta"), Qt::EditRole));
        QCOMPARE(names(), (QStringList{u"beta.html"_s, u"Delta"_s, u"gamma.html"_s}));
        QCOMPARE(folder.row(), 1);
        QCOMPARE(m_model->node(page)->url(), at("Delta/page.html"));
        QCOMPARE(renamed.count(), 1);
        // An unchanged name is no rename, a taken one is none either.
        QVERIFY(!m_model->setData(folder, QStringLiteral("Delta"), Qt::EditRole));
        QSignalSpy failed(m_model.get(), &FileSystemModel::renameFailed);
        QVERIFY(!m_model->setData(folder, QStringLiteral("beta.html"), Qt::EditRole));
        QCOMPARE(failed.count(), 1);
        QCOMPARE(renamed.count(), 1);
    }

    // Shown with an escape, edited as it is.
    void aLineFeedInAName_isKeptByARename()
    {
        put("a\nb.txt");
        show();
        const QPersistentModelIndex item = m_model->index(0, 0);
        QCOMPARE(item.data().toString(), u"a\\nb.txt"_s);
        QCOMPARE(item.data(Qt::EditRole).toString(), u"a\nb.txt"_s);
        QVERIFY(!m_model->setData(item, u"a\nb.txt"_s, Qt::EditRole));
        QVERIFY(m_model->setData(item, u"a\nc.txt"_s, Qt::EditRole));
        QVERIFY(fs::exists(at("a\nc.txt")));
    }

    // Each listing waits until the test lets it go on.
    void aSlowServerHoldsNothingUp()
    {
        put("a.html");
        put("sub/x.html");
        QSemaphore held;
        m_model = std::make_unique<FileSystemModel>();
        const QAbstractItemModelTester tester(m_model.get(),
                                              QAbstractItemModelTester::FailureReportingMode::Fatal);
        m_model->setBackgroundLister([&held](const std::string& url, bool showsHidden) {
            held.acquire();
            return listFolder(url, showsHidden);
        });
        QSignalSpy late(m_model.get(), &FileSystemModel::listedLate);
        m_model->setRootNode(std::make_shared<FileSystemNode>(at("")));
        QCOMPARE(names(), QStringList());
        QVERIFY(m_model->isBeingListed({}));
        held.release();
        QTRY_COMPARE(late.size(), 1);
        QCOMPARE(names(), (QStringList{"a.html", "sub"}));
        QVERIFY(!m_model->isBeingListed({}));
        QCOMPARE(names(child("sub")), QStringList());
        put("b.html");
        m_model->refresh({});
        put("c.html");
        m_model->refresh({child("sub")});
        QCOMPARE(names(), (QStringList{"a.html", "sub"}));
        held.release(4);
        QTRY_COMPARE(names(), (QStringList{"a.html", "b.html", "c.html", "sub"}));
        QTRY_COMPARE(names(child("sub")), QStringList{"x.html"});
        m_model->refresh({});
        m_model->setRootNode(nullptr);
        held.release();
        m_model->setRootNode(std::make_shared<FileSystemNode>(at("no such folder")));
        (void)m_model->rowCount();
        m_model.reset();
        held.release();
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
    }

    void dragData_carriesAnyName()
    {
        const std::vector<std::string> odd = {"a b#%.html", "caf\xe9.html", "line\nfeed", "\xc3\xa4 & <x>"};
        for (const std::string& name : odd)
            put(name);
        show();
        QModelIndexList rows;
        for (const std::string& name : odd)
            rows.prepend(m_model->childNamed({}, name));
        const std::unique_ptr<QMimeData> data(m_model->mimeData(rows));
        const auto paths = pathsOfDragRecord(data->data(QLatin1String(dragRecordType)));
        QCOMPARE(paths.size(), odd.size());
        for (const std::string& name : odd)
            QVERIFY(std::find(paths.begin(), paths.end(), at(name)) != paths.end());
        const QByteArray uris = data->data(QStringLiteral("text/uri-list"));
        QVERIFY(uris.contains("/a%20b%23%25.html\r\n"));
        QVERIFY(uris.contains("/caf%E9.html\r\n"));
        QVERIFY(uris.contains("/line%0Afeed\r\n"));
        QVERIFY(pathsOfDragRecord("no property list").empty());
        QVERIFY(pathsOfDragRecord("<plist><dict/></plist>").empty());
    }
};

LUMA_TEST(tst_filesystemmodel)
#include "tst_filesystemmodel.moc"
