// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <filesystem>
#include <memory>
#include <string>

namespace luma::test {

/// A real sshd on a free port of the loopback interface, with a temporary account, isolated from the user's
/// ssh files.
///
/// start() moves the calling thread, and every process and thread that it starts later, into a private mount
/// namespace. There, /etc/passwd and /etc/shadow are covered by copies with one more account, in which root's
/// home folder is $HOME, so that ssh uses $HOME/.ssh. Nothing is visible outside, and everything ends with
/// the process, even after a crash. Call start() in initTestCase(), before the thread pool has threads. Needs
/// root; if the server can't run, start() is false and skipReason() gives the reason.
class SshServer final
{
public:
    SshServer();
    SshServer(const SshServer&) = delete;
    SshServer& operator=(const SshServer&) = delete;
    ~SshServer();

    bool start();
    [[nodiscard]] QString skipReason() const { return m_skipReason; }

    /// The destination for ssh: "NAME@127.0.0.1".
    [[nodiscard]] std::string login() const { return user() + "@" + server(); }
    [[nodiscard]] std::string user() const;
    [[nodiscard]] std::string server() const { return "127.0.0.1"; }
    [[nodiscard]] std::string port() const { return std::to_string(m_port); }
    /// Contains a blank, quotes, characters special to shells and Tcl, and one that is not ASCII.
    [[nodiscard]] std::string password() const { return m_password; }
    /// The account's home folder on the server, empty at first.
    [[nodiscard]] std::filesystem::path home() const;
    /// The folder that the ssh client uses as ~/.ssh.
    [[nodiscard]] std::filesystem::path clientFolder() const;

    /// Makes the account the owner of `folder` and everything in it.
    void giveToUser(const std::filesystem::path& folder) const;
    /// Removes all keys and known hosts, and empties the account's home folder.
    void reset() const;
    /// Writes the web server's configuration file to the place where LUMA looks for it, with or without the log
    /// format line.
    void setLogFormat(bool present) const;
    enum class Part { All, Sessions };
    /// Sends a signal to the server's processes, or only to those that serve a connection; not to the programs that
    /// these have started.
    void signal(int number, Part part) const;
    /// The number of processes of any program whose command line contains the port.
    [[nodiscard]] int processesAtPort() const;

private:
    bool enterNamespace();
    bool addAccount();
    bool makeLocalFolder();
    bool startServer();
    bool fail(const char* what);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::string m_password;
    QProcess m_server;
    QString m_skipReason;
    int m_port = 0;
};

} // namespace luma::test
