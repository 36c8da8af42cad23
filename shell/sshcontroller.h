// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Commands and remote login by key, as class-level operations without state. All block the calling thread,
/// any one; a set-up and a sudo test do so without a time limit. Strings are bytes: logins, passwords and
/// names go in and come back as they are, in UTF-8 as a rule.
///
/// The outcome of a check or a set-up is a string: empty is success, anything else a fixed message, "Error in
/// connection" when ssh or expect failed in a way that has no message of its own. A login is a user, an at
/// sign and a server, or "localhost"; a port is text. They reach ssh as single arguments and never as
/// options.
class SSHController final
{
public:
    SSHController() = delete;

    /// Runs an executable, named by the path in element 0, with the other elements as its arguments. What it
    /// printed on standard output when it exited with status 0; else, or when it cannot be started, the empty
    /// string. Standard input and error are ours.
    static std::string unixShellWithResultAndArguments(const std::vector<std::string>& command);

    /// Runs an expect script, in UTF-8, that finds `arguments` in its argument vector. What it wrote to
    /// standard error when it exited with status 0; else "Error in connection". Standard output is ours. The
    /// arguments travel with the script on standard input: on expect's command line every user of the
    /// computer could read a password among them.
    static std::string runExpectScript(std::string_view script, const std::vector<std::string>& arguments);

    /// Does login by key work, and is the server prepared? Takes 15 seconds at most; for "localhost" ssh is
    /// not started.
    static std::string checkConnectionOK(const std::string& login, const std::string& port = "22");

    /// Makes a key pair if there is none and installs the public key on the server.
    static std::string setUpRemoteLogin(const std::string& login, const std::string& password);
    static std::string setUpRemoteLogin(const std::string& login, const std::string& port,
                                        const std::string& password);

    /// Does sudo accept the password, here ("localhost") or on the server?
    static std::string checkSudoWillWorkAt(const std::string& login, const std::string& password);
    static std::string checkSudoWillWorkAt(const std::string& login, const std::string& port,
                                           const std::string& password);
};

} // namespace luma
