// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/quitsignals.h"
#include "tests/support/registry.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace luma;

class tst_quitsignals final : public QObject
{
    Q_OBJECT

    int m_asked = 0;
    int m_refusals = 0;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != qApp || event->type() != QEvent::Quit)
            return false;
        if (++m_asked > m_refusals)
            return false;
        // A later signal finds the program as a user's answer would leave it.
        QTimer::singleShot(0, this, [] { QTimer::singleShot(0, qApp, [] { (void)std::raise(SIGTERM); }); });
        return true;
    }

private slots:
    // Without it the next signal ended the program where it stood.
    void refusedQuit_isAskedForAgainByTheNextSignal()
    {
        m_refusals = 2;
        const QuitSignals signalsQuit;
        qApp->installEventFilter(this);
        QTimer::singleShot(0, qApp, [] { (void)std::raise(SIGTERM); });
        QCOMPARE(QCoreApplication::exec(), 0);
        QCOMPARE(m_asked, 3);
    }
};

LUMA_TEST(tst_quitsignals)
#include "tst_quitsignals.moc"
