// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/sshserver.h"

#include "tests/support/loopback.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <fcntl.h>
#include <pwd.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <vector>

namespace fs = std::filesystem;

namespace luma::test {

namespace {

constexpr auto accountName = "luma-throw-away";
constexpr auto serverProgram = "/usr/sbin/sshd";
// Above the numbers that useradd assigns, below those of the system's dynamic users.
constexpr unsigned accountId = 60917;
const fs::path configurationFolder = "/usr/local/palisan/apache2";

std::string contents(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    // A process may end while its entry in /proc is read; this gives an empty text then, not an exception.
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// `passwd` with `home` as root's home folder.
std::string withRootHome(std::string passwd, const std::string& home)
{
    const std::size_t root = passwd.find("root:");
    std::size_t from = root;
    for (int field = 0; field < 5; ++field)
        from = passwd.find(':', from) + 1;
    return passwd.replace(from, passwd.find(':', from) - from, home);
}

// In the format of /etc/shadow. By perl, because crypt() fails under the address sanitizer.
std::string hashOf(const std::string& password)
{
    QProcess perl;
    perl.start(QStringLiteral("perl"),
               {QStringLiteral("-e"), QStringLiteral("print crypt(join('', <STDIN>), '$6$lumathrowaway$')")});
    perl.write(password.data(), static_cast<qint64>(password.size()));
    perl.closeWriteChannel();
    perl.waitForFinished();
    return perl.readAllStandardOutput().toStdString();
}

// Their ids.
std::vector<std::string> allProcesses()
{
    std::vector<std::string> all;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos)
            all.push_back(std::move(name));
    }
    return all;
}

// From proc(5): "ID (NAME) STATE PARENT ..."; the name may hold anything.
std::string parentOf(const std::string& process)
{
    const std::string status = contents("/proc/" + process + "/stat");
    std::string state;
    std::string parent;
    std::istringstream(status.substr(status.rfind(')') + 1)) >> state >> parent;
    return parent;
}

bool mountOver(const fs::path& file, const fs::path& target)
{
    return ::mount(file.c_str(), target.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

} // namespace

SshServer::SshServer() = default;

SshServer::~SshServer()
{
    m_server.kill();
    m_server.waitForFinished();
}

std::string SshServer::user() const
{
    return accountName;
}

fs::path SshServer::home() const
{
    return fs::path(m_folder->path().toStdString()) / "home";
}

fs::path SshServer::clientFolder() const
{
    return fs::path(qgetenv("HOME").toStdString()) / ".ssh";
}

bool SshServer::fail(const char* what)
{
    m_skipReason =
        QString::fromUtf8(what) + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool SshServer::start()
{
    m_folder = std::make_unique<QTemporaryDir>();
    if (::geteuid() != 0) {
        m_skipReason = QStringLiteral("an ssh server with a temporary account needs root");
        return false;
    }
    const passwd* self = ::getpwuid(::geteuid());
    if (!self || qgetenv("HOME") == self->pw_dir) {
        m_skipReason = QStringLiteral("the test has no temporary home folder");
        return false;
    }
    if (!fs::exists(serverProgram)) {
        m_skipReason = QStringLiteral("sshd is not installed");
        return false;
    }
    return enterNamespace() && addAccount() && makeLocalFolder() && startServer();
}

// Later mounts from outside appear in the namespace, ours don't appear outside.
bool SshServer::enterNamespace()
{
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_SLAVE, nullptr) != 0)
        return fail("no mount namespace");
    return true;
}

bool SshServer::addAccount()
{
    const auto* random = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    m_password = "-p\\w $HOME[exit]{\"';\xc3\xa4 ";
    for (int i = 0; i < 12; ++i)
        m_password += random[QRandomGenerator::system()->bounded(62)];
    const std::string hash = hashOf(m_password);

    const fs::path folder = m_folder->path().toStdString();
    fs::permissions(folder, fs::perms(0755));
    fs::create_directory(home());
    giveToUser(home());
    const std::string name = accountName;
    const std::string id = std::to_string(accountId);
    std::ofstream(folder / "passwd") << withRootHome(contents("/etc/passwd"), qgetenv("HOME").toStdString())
                                     << name + ":x:" + id + ":" + id + "::" + home().string() + ":/bin/sh\n";
    std::ofstream(folder / "shadow") << contents("/etc/shadow")
                                     << name + ":" + hash + ":19000:0:99999:7:::\n";
    fs::permissions(folder / "shadow", fs::perms(0600));
    if (!mountOver(folder / "passwd", "/etc/passwd") || !mountOver(folder / "shadow", "/etc/shadow"))
        return fail("no temporary account");
    return true;
}

// The web server's configuration is looked for in /usr/local, so a temporary file system covers it. Its old
// contents reappear there, read-only.
bool SshServer::makeLocalFolder()
{
    const int original = ::open("/usr/local", O_PATH | O_DIRECTORY | O_CLOEXEC);
    const fs::path path = "/proc/self/fd/" + std::to_string(original);
    if (original < 0 || ::mount("tmpfs", "/usr/local", "tmpfs", 0, "mode=0755") != 0)
        return fail("/usr/local can't be covered");
    for (const auto& entry : fs::directory_iterator(path)) {
        const fs::path copy = "/usr/local" / entry.path().filename();
        if (!entry.is_directory() || entry.is_symlink() || copy == configurationFolder.parent_path())
            continue;
        fs::create_directory(copy);
        if (!mountOver(entry.path(), copy) ||
            ::mount(nullptr, copy.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) != 0)
            return fail("/usr/local can't be filled");
    }
    ::close(original);
    return true;
}

bool SshServer::startServer()
{
    const fs::path folder = m_folder->path().toStdString();
    // sshd needs this empty folder, which its service would create.
    ::mkdir("/run/sshd", 0755);
    QProcess::execute(QStringLiteral("ssh-keygen"),
                      {QStringLiteral("-q"), QStringLiteral("-t"), QStringLiteral("ed25519"),
                       QStringLiteral("-N"), QString(), QStringLiteral("-f"),
                       QString::fromStdString(folder / "hostkey")});
    m_server.setProcessChannelMode(QProcess::MergedChannels);
    for (int attempt = 0; attempt < 5; ++attempt) {
        m_port = freePort();
        std::ofstream(folder / "config")
            << "Port " << m_port << "\nListenAddress 127.0.0.1\nHostKey " << (folder / "hostkey").string()
            << "\nPidFile none\nUsePAM no\nPasswordAuthentication yes\n"
               "KbdInteractiveAuthentication no\nMaxStartups 100\n"
               "Subsystem sftp internal-sftp\nAllowUsers "
            << accountName << "\n";
        m_server.start(QString::fromUtf8(serverProgram),
                       {QStringLiteral("-D"), QStringLiteral("-e"), QStringLiteral("-f"),
                        QString::fromStdString(folder / "config")});
        QByteArray log;
        while (m_server.waitForReadyRead()) {
            log += m_server.readAll();
            if (log.contains("Server listening"))
                return true;
        }
        m_skipReason = QStringLiteral("sshd did not start: ") + QString::fromLocal8Bit(log);
        m_server.kill();
        m_server.waitForFinished();
    }
    return false;
}

void SshServer::giveToUser(const fs::path& folder) const
{
    fs::recursive_directory_iterator entries(folder);
    if (::lchown(folder.c_str(), accountId, accountId) != 0)
        qFatal("can't change the owner of %s", folder.c_str());
    for (const auto& entry : entries)
        if (::lchown(entry.path().c_str(), accountId, accountId) != 0)
            qFatal("can't change the owner of %s", entry.path().c_str());
}

void SshServer::reset() const
{
    fs::remove_all(clientFolder());
    for (const auto& entry : fs::directory_iterator(home()))
        fs::remove_all(entry.path());
}

void SshServer::setLogFormat(bool present) const
{
    fs::create_directories(configurationFolder);
    std::ofstream(configurationFolder / "httpd.conf") << "Listen 80\n"
                                                      << (present ? "LogFormat \"%h %l %u\" Tallyweb\n" : "");
}

int SshServer::processesAtPort() const
{
    const std::vector<std::string> all = allProcesses();
    return static_cast<int>(std::count_if(all.begin(), all.end(), [this](const std::string& process) {
        return contents("/proc/" + process + "/cmdline").find('\0' + port() + '\0') != std::string::npos;
    }));
}

void SshServer::signal(int number, Part part) const
{
    std::set<std::string> family = {std::to_string(m_server.processId())};
    const std::vector<std::string> all = allProcesses();
    for (std::size_t before = 0; before < family.size();) {
        before = family.size();
        for (const std::string& process : all) {
            if (family.contains(parentOf(process)))
                family.insert(process);
        }
    }
    if (part == Part::Sessions)
        family.erase(std::to_string(m_server.processId()));
    std::erase_if(family, [](const std::string& process) {
        return contents("/proc/" + process + "/cmdline").find("sshd") == std::string::npos;
    });
    for (const std::string& process : family)
        ::kill(std::stoi(process), number);
}

} // namespace luma::test
