// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/lumactl/killedlumactl.h"

#include <QProcess>

namespace luma::test {

bool canKillLumactl()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#else
    return !qEnvironmentVariableIsEmpty("LUMA_BUILD_DIR");
#endif
}

LumactlEnd runLumactl(const Site& site, const QStringList& arguments, int killAt)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (killAt > 0) {
        environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(LUMA_KILLATCALL));
        environment.insert(QStringLiteral("LUMA_KILL_AT"), QString::number(killAt));
    }
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QString::fromStdString(site.root().native()));
    process.start(qEnvironmentVariable("LUMA_BUILD_DIR") + QLatin1String("/bin/lumactl"), arguments);
    LumactlEnd end;
    if (!process.waitForFinished(-1))
        return end;
    end.isKilled = process.exitStatus() != QProcess::NormalExit;
    end.code = process.exitCode();
    end.errors = process.readAllStandardError();
    return end;
}

} // namespace luma::test
