// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/mainhop.h"
#include "base/workitem.h"
#include "tests/support/registry.h"

#include <QTest>
#include <QThread>
#include <QThreadPool>

#include <atomic>

using namespace luma;

class tst_mainhop final : public QObject
{
    Q_OBJECT

private slots:
    void hops_runOnMainInOrder()
    {
        QList<int> order;
        std::atomic<bool> done = false;
        start(std::make_shared<WorkItem>(), [&](const WorkItem&) {
            for (int i = 0; i < 100; ++i)
                onMain([&order, i] { order += QThread::currentThread() == qApp->thread() ? i : -1; });
            done = true;
        });
        QTRY_VERIFY(done);
        QCOMPARE(order.size(), 100);
        for (int i = 0; i < 100; ++i)
            QCOMPARE(order[i], i);
    }

    void hop_toADestroyedTargetDoesNothing()
    {
        auto target = std::make_unique<QObject>();
        const QPointer<QObject> guard(target.get());
        target.reset();
        std::atomic<int> answer = -1;
        start(std::make_shared<WorkItem>(),
              [&](const WorkItem&) { answer = onMain(guard, [](QObject&) { qFatal("reached"); }) ? 1 : 0; });
        QTRY_COMPARE(answer.load(), 0);
    }

    void cancelledItem_neverStarts()
    {
        const auto item = std::make_shared<WorkItem>();
        item->cancel();
        std::atomic<bool> ran = false;
        start(item, [&](const WorkItem&) { ran = true; });
        QThreadPool::globalInstance()->waitForDone();
        QVERIFY(!ran);
    }

    // Runs last, because the hop stays closed.
    void zClosing_releasesWaitingJobs()
    {
        std::atomic<int> answer = -1;
        start(std::make_shared<WorkItem>(), [&](const WorkItem&) { answer = onMain([] {}) ? 1 : 0; });
        closeMainHop();
        QThreadPool::globalInstance()->waitForDone();
        QCOMPARE(answer.load(), 0);
    }
};

LUMA_TEST(tst_mainhop)
#include "tst_mainhop.moc"
