// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/browser.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"

#include <QApplication>
#include <QListView>
#include <QPainter>
#include <QPalette>
#include <QTest>
#include <QThreadPool>

#include <sys/xattr.h>

using namespace luma;
using luma::test::PaneFixture;

namespace {

QPalette darkPalette()
{
    QPalette palette(QColor(45, 47, 50), QColor(45, 47, 50));
    palette.setColor(QPalette::Base, QColor(30, 31, 33));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(42, 110, 180));
    return palette;
}

void paintImage(const std::filesystem::path& path)
{
    QImage image(640, 400, QImage::Format_RGB32);
    image.fill(QColor(70, 130, 180));
    QPainter painter(&image);
    painter.setBrush(QColor(250, 210, 80));
    painter.drawEllipse(220, 100, 200, 200);
    painter.end();
    image.save(QString::fromStdString(path.string()));
}

} // namespace

/// The pane in its states, light and dark. What can be said of a picture without eyes is checked: the states
/// differ, the tint and the thumbnail are there. With LUMA_SCREENSHOTS set the pictures are kept for eyes.
class tst_screens final : public QObject
{
    Q_OBJECT

private slots:
    void pane_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }
    void pane()
    {
        QFETCH(bool, dark);
        const QPalette before = QApplication::palette();
        if (dark)
            QApplication::setPalette(darkPalette());
        const char* suffix = dark ? "-dark" : "";
        PaneFixture site;
        paintImage(site.at("images/sunrise.png"));
        for (const char* name :
             {"images/a very long name of a picture that has no room in its column.jpeg",
              "images/caf\xe9\n.txt", "images/script.js", "images/notes.txt", "empty/x", "labelled.html"})
            site.put(name);
        std::filesystem::remove(site.at("empty/x"));
        ::setxattr(site.at("labelled.html").c_str(), "user.xdg.tags", "Red", 3, 0);
        QCoreApplication::processEvents();
        test::screenshot(site.window, (std::string("pane-disconnected") + suffix).c_str());
        const QImage disconnected = site.window.grab().toImage();
        site.pane->doConnect();
        QTRY_VERIFY(site.pane->rootNode());
        site.pane->browser().setPath({"images", "sunrise.png"});
        QVERIFY(QTest::qWaitForWindowActive(&site.window));
        site.find<QListView>("browserList1")->setFocus();
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QCoreApplication::processEvents();
        test::screenshot(site.window, (std::string("pane-preview") + suffix).c_str());
        const auto* preview =
            site.find<QWidget>("previewView")->findChild<QLabel*>(QStringLiteral("iconImageView"));
        QTRY_COMPARE(preview->pixmap().deviceIndependentSize().toSize().width(), 195);
        site.pane->browser().setPath({"empty"});
        QCoreApplication::processEvents();
        test::screenshot(site.window, (std::string("pane-empty-folder") + suffix).c_str());
        QVERIFY(site.window.grab().toImage() != disconnected);
        QApplication::setPalette(before);
    }
};

LUMA_TEST(tst_screens)
#include "tst_screens.moc"
