// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkjobs.h"
#include "browser/panehost.h"
#include "tests/support/registry.h"

#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <fstream>

namespace fs = std::filesystem;
using namespace luma;

namespace {

/// The window's report, written down.
class Recorder final : public ProgressReporter
{
public:
    QString log;
    std::function<void()> whenAppended;

    void begin(const QString& /*status*/) override
    {
        m_isRunning = true;
        log.clear();
        emit began();
    }
    void append(const QString& text) override
    {
        log += text;
        if (whenAppended)
            std::exchange(whenAppended, {})();
    }
    void finish() override { m_isRunning = false; }
    [[nodiscard]] bool isRunning() const override { return m_isRunning; }
    [[nodiscard]] QString lineText(int number) const override
    {
        return log.split(QLatin1Char('\n')).value(number);
    }

private:
    bool m_isRunning = false;
};

} // namespace

class tst_linkjobs final : public QObject
{
    Q_OBJECT

private slots:
    // One page fills the log many times over.
    void stoppedWithinAPage_theLogEndsWithDone()
    {
        const QTemporaryDir folder;
        const fs::path site = folder.path().toStdString();
        {
            std::ofstream page(site / "large.html");
            for (int i = 0; i < 100'000; ++i)
                page << "<a href='somewhere/in/this/site/page-" << i << ".html'>";
        }
        Recorder progress;
        LinkJobs jobs([&progress] { return &progress; }, this);
        progress.whenAppended = [&jobs] { jobs.stop(); };
        jobs.findMissingLinks(site);
        QTRY_VERIFY(!progress.isRunning());
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QCoreApplication::processEvents();
        QVERIFY(progress.log.endsWith(QLatin1String("\n\nDone")));
        QVERIFY(!progress.log.contains(QLatin1String("page-99999.html")));
    }

    void aJobThatHasThePanel_keepsAReportAway()
    {
        const QTemporaryDir folder;
        Recorder progress;
        progress.begin(QString());
        progress.append(QStringLiteral("another's"));
        LinkJobs jobs([&progress] { return &progress; }, this);
        jobs.findMissingLinks(folder.path().toStdString());
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QCOMPARE(progress.log, QStringLiteral("another's"));
        QVERIFY(progress.isRunning());
    }
};

LUMA_TEST(tst_linkjobs)
#include "tst_linkjobs.moc"
