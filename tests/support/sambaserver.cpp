// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/sambaserver.h"

#include "base/files.h"
#include "tests/support/loopback.h"
#include "tests/support/patience.h"

#include <QDir>
#include <QStandardPaths>
#include <QTest>
#include <QUuid>

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

namespace luma::test {

namespace {

constexpr auto configuration = R"([global]
server role = standalone server
interfaces = lo
bind interfaces only = yes
smb ports = %2
disable netbios = yes
disable spoolss = yes
load printers = no
map to guest = never
passdb backend = tdbsam:%1/private/passdb.tdb
username map = %1/users
private dir = %1/private
lock directory = %1/lock
state directory = %1/state
cache directory = %1/cache
pid directory = %1/pid
ncalrpc dir = %1/ncalrpc
log file = %1/log
[Web Site]
path = %1/shares/Web Site
read only = no
[Archive]
path = %1/shares/Archive
read only = no
)";

QString program(const char* name)
{
    return QStandardPaths::findExecutable(
        QLatin1String(name),
        {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/bin"), QStringLiteral("/sbin")});
}

bool write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

pid_t SambaServer::fuseDaemon()
{
    const std::string folder = qgetenv("XDG_RUNTIME_DIR").toStdString() + "/gvfs";
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const auto line = readFile(entry.path() / "cmdline");
        if (line && line->find("gvfsd-fuse") != std::string::npos && line->find(folder) != std::string::npos)
            return std::stoi(entry.path().filename());
    }
    return 0;
}

QString SambaServer::whyNot()
{
    if (::geteuid() != 0)
        return QStringLiteral("smbd needs root");
    if (program("smbd").isEmpty() || program("smbpasswd").isEmpty())
        return QStringLiteral("samba is not installed");
    return {};
}

SambaServer::~SambaServer()
{
    stop();
}

bool SambaServer::writeConfiguration()
{
    for (const char* name :
         {"private", "lock", "state", "cache", "pid", "ncalrpc", "shares/Web Site", "shares/Archive"})
        QDir().mkpath(at(name));
    return write(at("smb.conf"), QLatin1String(configuration).arg(m_folder.path()).arg(m_port).toUtf8()) &&
           write(at("users"), "root = webmaster\n");
}

bool SambaServer::addAccount()
{
    m_password = QUuid::createUuid().toByteArray(QUuid::Id128).toStdString();
    QProcess smbpasswd;
    smbpasswd.start(program("smbpasswd"), {QStringLiteral("-c"), at("smb.conf"), QStringLiteral("-a"),
                                           QStringLiteral("-s"), QStringLiteral("root")});
    const QByteArray line = QByteArray::fromStdString(m_password) + '\n';
    smbpasswd.write(line + line);
    smbpasswd.closeWriteChannel();
    return smbpasswd.waitForFinished() && smbpasswd.exitCode() == 0;
}

bool SambaServer::start()
{
    m_port = freePort();
    if (!writeConfiguration() || !addAccount())
        return false;
    // In a separate process group, so that stop() also ends the children that serve connections.
    m_process.setChildProcessModifier([] {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
    m_process.setStandardOutputFile(at("output"));
    m_process.setStandardErrorFile(at("output"));
    m_process.start(program("smbd"),
                    {QStringLiteral("--configfile=") + at("smb.conf"), QStringLiteral("--foreground"),
                     QStringLiteral("--no-process-group"), QStringLiteral("--debug-stdout")});
    return m_process.waitForStarted() && QTest::qWaitFor([this] { return answers(m_port); }, patience);
}

void SambaServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    const auto group = static_cast<pid_t>(m_process.processId());
    ::kill(-group, SIGTERM);
    m_process.waitForFinished(10'000);
    ::kill(-group, SIGKILL);
    m_process.waitForFinished();
}

std::string SambaServer::address() const
{
    return "smb://127.0.0.1:" + std::to_string(m_port);
}

std::filesystem::path SambaServer::folder(const char* share) const
{
    return std::filesystem::path(at("shares").toStdString()) / share;
}

} // namespace luma::test
