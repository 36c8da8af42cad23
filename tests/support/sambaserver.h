// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace luma::test {

/// A real smbd on a free port of the loopback interface, with configuration, state and password file in a
/// temporary folder: two shares, "Web Site" and "Archive", one account with a random password, no guests.
/// Needs root. Stops with the object.
class SambaServer final
{
public:
    SambaServer() = default;
    ~SambaServer();

    /// Why the server can't run on this machine; empty if it can.
    static QString whyNot();
    /// The process through which all calls on the folders of the session's shares go; 0 if there is none.
    static pid_t fuseDaemon();

    /// True once the server accepts connections.
    bool start();
    void stop();

    /// "smb://127.0.0.1:PORT".
    [[nodiscard]] std::string address() const;
    [[nodiscard]] static std::string user() { return "webmaster"; }
    [[nodiscard]] const std::string& password() const { return m_password; }
    /// The local folder behind a share.
    [[nodiscard]] std::filesystem::path folder(const char* share) const;

private:
    [[nodiscard]] QString at(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    bool writeConfiguration();
    bool addAccount();

    QTemporaryDir m_folder;
    QProcess m_process;
    quint16 m_port = 0;
    std::string m_password;
};

} // namespace luma::test
