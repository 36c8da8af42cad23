// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/linkjobs.h"
#include "tests/browser/panefixture.h"
#include "tests/support/registry.h"

#include <QTest>
#include <QThreadPool>

using namespace luma;
using luma::test::Recorder;

class tst_linkjobs final : public QObject
{
    Q_OBJECT

private slots:
    // One page fills the log many times over.
    void stoppedWithinAPage_saysSoAndGoesOnWhenAsked()
    {
        std::string page;
        for (int i = 0; i < 100'000; ++i)
            page += "<a href='somewhere/in/this/site/page-" + std::to_string(i) + ".html'>";
        const test::Site site({{"large.html", page}});
        Recorder progress;
        LinkJobs jobs(progress, this);
        progress.whenAppended = [&jobs] { jobs.stop(); };
        jobs.findMissingLinks(site.root(), {.linkRules = LinkRules::Letter});
        QTRY_VERIFY(!progress.isRunning());
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QCoreApplication::processEvents();
        QVERIFY(progress.log.endsWith(QLatin1String("\n\nStopped before all pages were looked at.")));
        QVERIFY(!progress.log.contains(QLatin1String("page-99999.html")));
        QCOMPARE(progress.lastEnd.how, JobEnd::How::Stopped);
        QVERIFY(progress.lastEnd.goOn);
        progress.lastEnd.goOn();
        QTRY_VERIFY(progress.log.endsWith(QLatin1String("\n\nDone")));
        QVERIFY(progress.log.contains(QLatin1String("page-99999.html")));
    }

    void aJobThatHasThePanel_comesBeforeAReport()
    {
        const test::Site site;
        Recorder progress;
        progress.begin(QString(), ProgressReporter::Place::Panel);
        progress.append(QStringLiteral("another's"));
        LinkJobs jobs(progress, this);
        jobs.findMissingLinks(site.root(), {});
        QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
        QCOMPARE(progress.log, QStringLiteral("another's"));
        QVERIFY(progress.isRunning());
        progress.finish({});
        QTRY_VERIFY(progress.log.endsWith(QLatin1String("\nDone")));
    }
};

LUMA_TEST(tst_linkjobs)
#include "tst_linkjobs.moc"
