// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/icons.h"
#include "tests/support/registry.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>
#include <QTemporaryDir>
#include <QTest>

using namespace luma;

class tst_icons final : public QObject
{
    Q_OBJECT

private:
    // A theme with one icon: the left half is black, the right half has another colour.
    static void makeTheme(const QString& folder, const QString& icon, const QColor& right)
    {
        QVERIFY(QDir().mkpath(folder + "/16"));
        QFile index(folder + "/index.theme");
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=one\nDirectories=16\n[16]\nSize=16\n");
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(Qt::black);
        QPainter(&image).fillRect(8, 0, 8, 16, right);
        QVERIFY(image.save(folder + "/16/" + icon + ".png"));
    }

private slots:
    void themeIcon_canBeSeenOnADarkDesktop_data()
    {
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QColor>("right");
        QTest::addColumn<bool>("isInked");
        const QColor nearly(0x20, 0x20, 0x20);
        QTest::newRow("one tone") << "add"
                                  << "list-add-symbolic" << nearly << true;
        QTest::newRow("one tone, no symbolic one") << "remove"
                                                   << "list-remove" << nearly << true;
        QTest::newRow("colours") << "stop"
                                 << "process-stop" << QColor(Qt::red) << false;
        QTest::newRow("shades") << "cut"
                                << "edit-cut" << QColor(Qt::lightGray) << false;
    }
    void themeIcon_canBeSeenOnADarkDesktop()
    {
        QFETCH(const QString, symbol);
        QFETCH(const QString, file);
        QFETCH(const QColor, right);
        QFETCH(const bool, isInked);
        const QTemporaryDir folder;
        makeTheme(folder.filePath(file), file, right);
        QIcon::setThemeSearchPaths({folder.path()});
        QIcon::setThemeName(file);
        QPalette dark(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
        dark.setColor(QPalette::HighlightedText, Qt::yellow);
        QGuiApplication::setPalette(dark);

        const auto inkIn = [icon = icons::symbol(symbol)](QIcon::Mode mode) {
            return icon.pixmap(QSize(16, 16), 1.0, mode).toImage().pixelColor(2, 2);
        };
        QCOMPARE(inkIn(QIcon::Normal), isInked ? dark.color(QPalette::WindowText) : QColor(Qt::black));
        if (!isInked)
            return;
        QCOMPARE(inkIn(QIcon::Selected), QColor(Qt::yellow));
        QVERIFY(inkIn(QIcon::Disabled).alpha() < 255);
    }
};

LUMA_TEST(tst_icons)
#include "tst_icons.moc"
