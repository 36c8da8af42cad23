// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/sshcontroller.h"

#include "shell/childprocess.h"
#include "shell/keytag.h"
#include "shell/remoteloginscripts.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>

namespace luma {

namespace {

constexpr auto expectProgram = "/usr/bin/expect";
constexpr auto errorInConnection = "Error in connection";
constexpr auto damagedKey = "fail - the public key in ~/.ssh/id_rsa.pub is missing, empty or damaged";
constexpr auto standardPort = "22";
constexpr auto thisComputer = "localhost";

std::string inHexadecimal(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value >> 4U];
        text += digits[value & 0xFU];
    }
    return text;
}

// A line of Tcl that sets argv. In hexadecimal no argument can be read as code.
std::string argumentLine(const std::vector<std::string>& arguments)
{
    std::string line = "set argv {}; foreach argument {";
    for (const std::string& argument : arguments)
        line += " {" + inHexadecimal(argument) + "}";
    line += " } {lappend argv [encoding convertfrom utf-8 [binary format H* $argument]]}; unset -nocomplain "
            "argument; set argc [llength $argv]\n";
    return line;
}

// ssh looks for .ssh here, regardless of HOME.
std::string homeFolder()
{
    std::array<char, 16384> buffer = {};
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return found->pw_dir;
}

// Empty if the file is missing or far too long for a key.
std::string contentsOf(const std::string& path)
{
    constexpr std::streamsize longestKey = 65'536;
    std::string text(longestKey + 1, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(file.gcount() > longestKey ? 0 : static_cast<std::size_t>(file.gcount()));
    return text;
}

void logKeyComment()
{
    const std::string comment = SSHController::unixShellWithResultAndArguments(
        {"/bin/sh", "-c", "cat ~/.ssh/id_rsa.pub | sed 's/^ssh-rsa .* //'"});
    (void)std::printf("fileName = %s\n", comment.substr(0, comment.find('\n')).c_str());
    (void)std::fflush(stdout);
}

} // namespace

std::string SSHController::unixShellWithResultAndArguments(const std::vector<std::string>& command)
{
    if (command.empty())
        return {};
    ChildProcess child(
        {command.front(), {command.begin() + 1, command.end()}, {}, Collected::StandardOutput, {}});
    return child.waitForExit() == 0 ? child.takeCollected() : std::string();
}

std::string SSHController::runExpectScript(std::string_view script, const std::vector<std::string>& arguments)
{
    const std::string input = argumentLine(arguments) + std::string(script);
    ChildProcess child({expectProgram, {"-f", "-"}, {}, Collected::StandardError, input});
    return child.waitForExit() == 0 ? child.takeCollected() : errorInConnection;
}

std::string SSHController::checkConnectionOK(const std::string& login, const std::string& port)
{
    if (login != thisComputer)
        return runExpectScript(remotelogin::checkConnection, {login, port});
    return unixShellWithResultAndArguments(
        {"/bin/sh", "-c",
         "test -z \"`grep '^LogFormat.*Tallyweb$' /usr/local/palisan/apache2/httpd.conf`\""
         " && echo fail - customlog needs setup\n"});
}

std::string SSHController::setUpRemoteLogin(const std::string& login, const std::string& password)
{
    return setUpRemoteLogin(login, standardPort, password);
}

std::string SSHController::setUpRemoteLogin(const std::string& login, const std::string& port,
                                            const std::string& password)
{
    // If this fails, there is no key to install.
    (void)runExpectScript(remotelogin::makeKey, {});
    logKeyComment();
    const std::string home = homeFolder();
    const std::string key = contentsOf(home + "/.ssh/id_rsa.pub");
    if (!isWholePublicKey(key))
        return damagedKey;
    const std::string tag = keyTag(key);
    return runExpectScript(remotelogin::installKey, {login, port, password, home, tag});
}

std::string SSHController::checkSudoWillWorkAt(const std::string& login, const std::string& password)
{
    return checkSudoWillWorkAt(login, standardPort, password);
}

std::string SSHController::checkSudoWillWorkAt(const std::string& login, const std::string& port,
                                               const std::string& password)
{
    const std::string_view script =
        login == thisComputer ? remotelogin::checkSudoHere : remotelogin::checkSudoThere;
    return runExpectScript(script, {login, port, password});
}

} // namespace luma
