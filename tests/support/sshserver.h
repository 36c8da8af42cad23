// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <filesystem>
#include <memory>
#include <string>

namespace luma::test {

/// An ssh server of our own on the loopback interface, and a world in which ssh touches nobody's files.
///
/// start() moves the calling thread, and every process and thread that it starts from then on, into a mount
/// namespace of its own. There, copies stand over /etc/passwd and /etc/shadow that hold one more account, a
/// throw-away one with a password, and that name $HOME as our own home folder, so that ssh uses
/// $HOME/.ssh. Nothing of it is seen outside, and it is gone with the process even after a crash. Call
/// start() in initTestCase(), before jobs have given the thread pool threads. Needs root; where it cannot
/// run, start() is false and skipReason() says why.
class SshServer final
{
public:
    SshServer();
    SshServer(const SshServer&) = delete;
    SshServer& operator=(const SshServer&) = delete;
    ~SshServer();

    bool start();
    [[nodiscard]] QString skipReason() const { return m_skipReason; }

    /// What ssh is given: "NAME@127.0.0.1".
    [[nodiscard]] std::string login() const { return user() + "@" + server(); }
    [[nodiscard]] std::string user() const;
    [[nodiscard]] std::string server() const { return "127.0.0.1"; }
    [[nodiscard]] std::string port() const { return std::to_string(m_port); }
    /// Has a blank, quotes, and characters that shells and Tcl act on, and one that is not ASCII.
    [[nodiscard]] std::string password() const { return m_password; }
    /// The account's home folder on the server, empty but for what a test puts there.
    [[nodiscard]] std::filesystem::path home() const;
    /// Our own .ssh, as the ssh client sees it.
    [[nodiscard]] std::filesystem::path clientFolder() const;

    /// Makes `folder` and all in it the account's own.
    void giveToUser(const std::filesystem::path& folder) const;
    /// Empties both homes: no keys, no known hosts.
    void reset() const;
    /// Puts the server's configuration file where it is looked for, with or without the log format line.
    void setLogFormat(bool present) const;
    /// Processes, of whatever program, whose command line names our port.
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
