// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// Runs commands and sets up remote login by key. Stateless. All functions block the calling thread, which
/// may be any; a set-up and a sudo test have no time limit. Strings are bytes, usually UTF-8, and are passed
/// on unchanged.
///
/// A check or set-up answers with a string: empty for success, otherwise a fixed message, "Error in
/// connection" for failures of ssh or expect without a message of their own. A login is "user@server" or
/// "localhost"; a port is text. Both reach ssh as single arguments, never as options.
class SSHController final
{
public:
    SSHController() = delete;

    /// Runs the executable whose path is element 0, with the other elements as its arguments, and gives what
    /// it printed to standard output; empty if it could not be started or its exit status is not 0. Standard
    /// input and error are inherited.
    static std::string unixShellWithResultAndArguments(const std::vector<std::string>& command);

    /// Runs an expect script (UTF-8) with `arguments` as its argv and gives what it wrote to standard error;
    /// "Error in connection" if its exit status is not 0. Standard output is inherited. The arguments are
    /// passed on standard input, before the script: on the command line, every user of the computer could
    /// read a password among them.
    static std::string runExpectScript(std::string_view script, const std::vector<std::string>& arguments);

    /// Checks that login by key works and that the server is prepared. Takes at most 15 seconds; does not
    /// start ssh for "localhost".
    static std::string checkConnectionOK(const std::string& login, const std::string& port = "22");

    /// Creates a key pair if there is none and installs the public key on the server.
    static std::string setUpRemoteLogin(const std::string& login, const std::string& password);
    static std::string setUpRemoteLogin(const std::string& login, const std::string& port,
                                        const std::string& password);

    /// Checks that sudo accepts the password, here ("localhost") or on the server.
    static std::string checkSudoWillWorkAt(const std::string& login, const std::string& password);
    static std::string checkSudoWillWorkAt(const std::string& login, const std::string& port,
                                           const std::string& password);
};

} // namespace luma
