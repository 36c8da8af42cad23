// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/logview.h"
#include "site/jobline.h"
#include "site/progresspanel.h"
#include "tests/site/twofolders.h"
#include "tests/support/registry.h"
#include "tests/support/screenshot.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace luma;

namespace {

class RefusingWindow final : public QWidget
{
public:
    bool wasAsked = false;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        wasAsked = true;
        event->ignore();
    }
};

} // namespace

class tst_progresspanel final : public QObject
{
    Q_OBJECT

private:
    QWidget m_window;
    JobLine* m_line = nullptr;
    ProgressPanel* m_progress = nullptr;

    template <class T>
    T& find(const char* name)
    {
        return *m_progress->panel().findChild<T*>(QLatin1String(name));
    }
    LogView& log() { return find<LogView>("progressPanelTextField2"); }
    bool isAtEnd() { return log().verticalScrollBar()->value() == log().verticalScrollBar()->maximum(); }

    void begin(const QString& status) { m_progress->begin(status, ProgressReporter::Place::Panel); }

    void chooseFile(const std::filesystem::path& file)
    {
        find<QPushButton>("saveButton").click();
        auto* const dialog = m_progress->panel().findChild<QFileDialog*>("saveLogDialog");
        QVERIFY(dialog);
        emit dialog->fileSelected(QString::fromStdString(file.string()));
        dialog->close();
    }

private slots:
    void init()
    {
        m_window.show();
        m_line = new JobLine(&m_window);
        m_progress = new ProgressPanel(*m_line, &m_window);
    }
    void cleanup()
    {
        delete m_progress;
        delete m_line;
    }

    void aJobFromBeginToOK()
    {
        begin("Checking source files for missing links (*** MISSING ***)");
        QVERIFY(m_progress->panel().isVisible());
        QVERIFY(!find<QPushButton>("progressPanelOKButton").isEnabled());
        QTest::keyClick(&m_progress->panel(), Qt::Key_Escape);
        m_progress->panel().close();
        QVERIFY(m_progress->panel().isVisible());
        test::saveScreenshots(m_progress->panel(), "progress-empty");
        for (int i = 0; i < 60; ++i)
            m_progress->append(QStringLiteral("/srv/site/page %1.html\n    href : css/main.css\n"
                                              "    src : images/none.png    *** MISSING ***\n")
                                   .arg(i));
        QCOMPARE(m_progress->lineText(1), "    href : css/main.css");
        QTRY_COMPARE(log().model()->rowCount(), 180);
        QSignalSpy stopped(m_progress, &ProgressReporter::stopRequested);
        find<QPushButton>("progressPanelStopButton").click();
        find<QPushButton>("progressPanelStopButton").click();
        QCOMPARE(stopped.count(), 1);
        m_progress->append("\nDone");
        m_progress->finish({});
        QCOMPARE(m_progress->lineText(181), "Done");
        QCOMPARE(log().model()->rowCount(), 182);
        QVERIFY(isAtEnd());
        test::saveScreenshots(m_progress->panel(), "progress-rows");
        QSignalSpy activated(m_progress, &ProgressReporter::lineActivated);
        const QModelIndex line = log().model()->index(170, 0);
        log().scrollTo(line);
        QTest::mouseClick(log().viewport(), Qt::LeftButton, {}, log().visualRect(line).center());
        QCOMPARE(activated.value(0), QVariantList{170});
        QTest::keyClick(&log(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), m_progress->lineText(170) + QLatin1Char('\n'));
        find<QPushButton>("progressPanelOKButton").click();
        QVERIFY(!m_progress->panel().isVisible());
    }

    void quittingThatAnotherWindowRefuses_bringsThePanelBack()
    {
        RefusingWindow other;
        other.show();
        begin("Listing");
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
        QVERIFY(other.wasAsked);
        QVERIFY(!quit.isAccepted());
        m_window.show();
        QTRY_VERIFY(m_progress->panel().isVisible());
        m_progress->panel().close();
        QVERIFY(m_progress->panel().isVisible());
        m_progress->finish({});
    }

    void staysAwayWhileTheWindowShowsASheet()
    {
        QDialog sheet(&m_window);
        sheet.open();
        begin("Listing");
        QVERIFY(!m_progress->panel().isVisible());
        m_progress->finish({});
    }

    void followsTheEnd_unlessScrolledUp()
    {
        begin(QString());
        for (int i = 0; i < 1000; ++i)
            m_progress->append(QStringLiteral("line %1\n").arg(i));
        QTRY_COMPARE(log().model()->rowCount(), 1000);
        QVERIFY(isAtEnd());
        log().verticalScrollBar()->setValue(10);
        m_progress->append("one more\n");
        QTRY_COMPARE(log().model()->rowCount(), 1001);
        QCOMPARE(log().verticalScrollBar()->value(), 10);
        m_progress->finish({});
        QVERIFY(isAtEnd());
    }

    void threeHundredThousandLines()
    {
        begin("Checking");
        QString all;
        for (int i = 0; i < 300'000; ++i) {
            const QString line = QStringLiteral("    href : folder/page-%1.html\n").arg(i);
            m_progress->append(line);
            all += line;
        }
        m_progress->append(QString(400, QLatin1Char('w')) + "end\n");
        m_progress->finish({});
        QCOMPARE(log().model()->rowCount(), 300'001);
        QCOMPARE(m_progress->lineText(299'999), "    href : folder/page-299999.html");
        QVERIFY(log().horizontalScrollBar()->maximum() > 0);
        log().selectAll();
        log().copySelected();
        QCOMPARE(QGuiApplication::clipboard()->text().size(), all.size() + 404);
        log().verticalScrollBar()->setValue(150'000);
        test::saveScreenshots(m_progress->panel(), "progress-300000");
    }

    void copiesAndSavesTheLogAsText()
    {
        const test::TwoFolders folders;
        begin(QString());
        m_progress->append("one\n\u00fc\n\nDone");
        m_progress->finish({});
        find<QPushButton>("copyAllButton").click();
        QCOMPARE(QGuiApplication::clipboard()->text(), "one\n\u00fc\n\nDone");
        chooseFile(folders.at("log.txt"));
        QCOMPARE(folders.bytesOf("log.txt"), std::string("one\n\u00fc\n\nDone"));
        chooseFile(folders.at("no such folder/log.txt"));
        auto* const box = m_progress->panel().findChild<QMessageBox*>();
        QVERIFY(box && box->isVisible());
        QVERIFY((box->text() + box->informativeText()).contains("no such folder"));
        box->close();
        QCOMPARE(folders.listing(), std::string("log.txt\nreceiving/\nsending/\n"));
    }

    void theModelTellsExactlyWhatItShows()
    {
        LogModel model;
        const QAbstractItemModelTester tester(&model);
        model.append("a\nhalf");
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.lineText(1), "half");
        model.publish();
        QCOMPARE(model.rowCount(), 2);
        QSignalSpy changed(&model, &LogModel::dataChanged);
        model.append(" whole\n\n");
        model.publish();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.lineText(1), "half whole");
        QVERIFY(model.lineText(2).isEmpty());
        QVERIFY(model.lineText(3).isEmpty());
        QVERIFY(model.lineText(-1).isEmpty());
        model.clear();
        QCOMPARE(model.lineCount(), 0);
    }
};

LUMA_TEST(tst_progresspanel)
#include "tst_progresspanel.moc"
