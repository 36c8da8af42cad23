// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/csstidy.h"

#include "base/resources.h"
#include "shell/quote.h"
#include "shell/taskwrapper.h"

#include <QStandardPaths>
#include <QTemporaryFile>

#include <unistd.h>

#include <algorithm>

namespace luma {

namespace {

// Linux takes no argument of 128 KiB (execve(2), MAX_ARG_STRLEN).
constexpr std::size_t longestCommand = 131'000;

std::string formatter(std::string_view interpreter)
{
    return " | " + std::string(interpreter) + " LUMAHTMLCSSJS/bin/pcsstidy";
}

std::string installedInterpreter()
{
    const std::string found = QStandardPaths::findExecutable(QStringLiteral("php")).toStdString();
    const bool isThere = ::access(tidyInterpreter.data(), X_OK) == 0;
    return isThere || found.empty() ? std::string(tidyInterpreter) : quotedForShell(found);
}

std::string output(std::string command)
{
    TaskWrapper shell(resourceFolder());
    // The user's own start files (zshenv) are not read.
    shell.arguments = {"-f", "-c", std::move(command)};
    return shell.run().value_or(std::string());
}

void replaceAll(std::string& text, std::string_view from, std::string_view to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

/// The length of the string that begins with a quote, quotes included (CSS Syntax 3, 4.3.5); 0 where no quote ends it.
std::size_t stringLength(std::string_view text)
{
    for (std::size_t at = 1; at < text.size() && text[at] != '\n'; ++at) {
        if (text[at] == text.front())
            return at + 1;
        if (text[at] == '\\')
            ++at;
    }
    return 0;
}

/// The length of what keeps its double quotes, as it would be another string with single ones: a string that holds the
/// other quote, such as the picture in url("data:..."). 0 where nothing of the kind begins.
std::size_t lengthWithQuotes(std::string_view text)
{
    if (text.front() != '"' && text.front() != '\'')
        return 0;
    const std::size_t length = stringLength(text);
    const char other = text.front() == '"' ? '\'' : '"';
    return text.substr(0, length).find(other) == std::string_view::npos ? 0 : length;
}

std::size_t commentLength(std::string_view text)
{
    if (!text.starts_with("/*"))
        return 0;
    const std::size_t end = text.find("*/", 2);
    return end == std::string_view::npos ? text.size() : end + 2;
}

std::string withoutDoubleQuotes(std::string_view text)
{
    std::string plain;
    plain.reserve(text.size());
    std::size_t comment = 0; // its end: an apostrophe in it begins no string
    // The end of a string that keeps its quotes; an encoding is declared with double ones (CSS Syntax 3, 3.2).
    std::size_t kept = text.starts_with("@charset \"") ? 9 + stringLength(text.substr(9)) : 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (at >= comment && at >= kept) {
            comment = std::max(comment, at + commentLength(text.substr(at)));
            if (at >= comment)
                kept = std::max(kept, at + lengthWithQuotes(text.substr(at)));
        }
        if (text.substr(at).starts_with("&amp;")) {
            plain += '&';
            at += 4;
        } else {
            plain += text[at] == '"' && at >= kept ? '\'' : text[at];
        }
    }
    // No command line holds a NUL; a browser reads one as U+FFFD (CSS Syntax, 3.3).
    replaceAll(plain, std::string_view("\0", 1), "\xef\xbf\xbd");
    return plain;
}

std::string echoCommand(std::string_view plain, std::string_view interpreter)
{
    std::string command = plain.starts_with('-') ? "echo - \"" : "echo \"";
    for (const char c : plain) {
        if (c == '$' || c == '`' || c == '"')
            command += '\\';
        // One pair for the quotes and one for echo.
        if (c == '\\')
            command += R"(\\\)";
        command += c;
    }
    return command.append("\"").append(formatter(interpreter));
}

// What no command line can hold goes through a file that only we can read.
std::string tidyThroughFile(const std::string& plain, std::string_view interpreter)
{
    QTemporaryFile file;
    if (!file.open() || file.write(plain.data(), static_cast<qint64>(plain.size())) < 0 ||
        !file.putChar('\n') || !file.flush())
        return {};
    const std::string name = quotedForShell(file.fileName().toStdString());
    return output("cat " + name + formatter(interpreter));
}

} // namespace

std::string tidyCommand(std::string_view text)
{
    return echoCommand(withoutDoubleQuotes(text), tidyInterpreter);
}

std::string tidyCSS(std::string_view text)
{
    const std::string plain = withoutDoubleQuotes(text);
    const std::string interpreter = installedInterpreter();
    const std::string command = echoCommand(plain, interpreter);
    return command.size() > longestCommand ? tidyThroughFile(plain, interpreter) : output(command);
}

} // namespace luma
