// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/fileuri.h"
#include "desktop/thumbnails.h"
#include "tests/support/registry.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <fstream>

namespace fs = std::filesystem;
using namespace luma;

class tst_thumbnails final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    fs::path at(const std::string& name) const { return fs::path(m_folder->path().toStdString()) / name; }

    void putImage(const std::string& name, const QSize& size) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        const fs::path plain = at("plain.png");
        QVERIFY(image.save(QString::fromStdString(plain.string())));
        fs::rename(plain, at(name));
    }

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void image_isScaledIntoTheSize_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QSize>("full");
        QTest::addColumn<QSize>("scaled");
        QTest::newRow("wide") << QByteArray("a.png") << QSize(1000, 400) << QSize(195, 78);
        QTest::newRow("small stays") << QByteArray("a.png") << QSize(20, 10) << QSize(20, 10);
        QTest::newRow("line") << QByteArray("a.png") << QSize(2000, 1) << QSize(195, 1);
        QTest::newRow("bytes for a name") << QByteArray("\xff\n#%.png") << QSize(300, 300) << QSize(165, 165);
        QTest::newRow("wrong extension") << QByteArray("a.txt") << QSize(300, 300) << QSize(165, 165);
    }
    void image_isScaledIntoTheSize()
    {
        QFETCH(QByteArray, name);
        QFETCH(QSize, full);
        putImage(name.toStdString(), full);
        QTEST(thumbnail(at(name.toStdString()), {195, 165}).size(), "scaled");
    }

    void filesWithoutAnImage_haveNone()
    {
        std::ofstream(at("page.html")) << "<p>";
        std::ofstream(at("broken.png")) << "\x89PNG\r\n\x1a\n and no more";
        QCOMPARE(::mkfifo(at("pipe.png").c_str(), 0600), 0);
        for (const char* name : {"page.html", "broken.png", "pipe.png", "gone.png", "."})
            QVERIFY(thumbnail(at(name), {195, 165}).isNull());
    }

    void otherFiles_haveTheDesktopsThumbnailOfTheSameVersion()
    {
        std::ofstream(at("film of \xff.mp4")) << "film";
        const fs::path film = at("film of \xff.mp4");
        struct stat status = {};
        QCOMPARE(::stat(film.c_str(), &status), 0);
        const QString shelf = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                              QLatin1String("/thumbnails/normal/");
        QVERIFY(QDir().mkpath(shelf));
        const QByteArray name = QCryptographicHash::hash(fileUri(film), QCryptographicHash::Md5).toHex();
        QImage kept(128, 64, QImage::Format_RGB32);
        kept.fill(Qt::blue);
        for (const qint64 time : {qint64{status.st_mtime}, qint64{status.st_mtime} - 1}) {
            kept.setText(QStringLiteral("Thumb::MTime"), QString::number(time));
            QVERIFY(kept.save(shelf + QString::fromLatin1(name) + QLatin1String(".png")));
            QCOMPARE(thumbnail(film, {195, 165}).isNull(), time != status.st_mtime);
        }
    }
};

LUMA_TEST(tst_thumbnails)
#include "tst_thumbnails.moc"
