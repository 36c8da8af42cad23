// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/commandarguments.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/reportoptions.h"
#include "lumactl/standardoutput.h"
#include "revision.h"

#include <algorithm>
#include <string>

using namespace luma;

namespace {

int print(const std::string& text, ExitCode code)
{
    StandardOutput output;
    output.text() += text;
    return static_cast<int>(output.finish() ? code : ExitCode::Found);
}

std::string programHelp()
{
    std::string text = "Usage: lumactl COMMAND ARGUMENTS\n"
                       "Checks links, moves files and publishes, for web sites kept as folders of pages.\n\n";
    for (const LumactlCommand* const command : lumactlCommands) {
        text.append("  ").append(command->name).append(" ").append(command->usage).append("\n      ");
        text.append(command->summary).append("\n");
    }
    return text + "\nSITE is a folder or the name of a site in LUMA's list.\n"
                  "lumactl help COMMAND describes a command, lumactl --version prints the version.\n"
                  "Exit codes: 0 success, 1 something was found or could not be done,\n"
                  "2 wrong arguments or an unreadable site.\n";
}

std::string helpOf(const LumactlCommand& command)
{
    std::string text = "Usage: lumactl ";
    text.append(command.name).append(" ").append(command.usage).append("\n\n").append(command.help);
    if (command.isReport)
        text.append("\nOptions of all reports:\n\n").append(reportOptionsHelp);
    return text;
}

bool asksForHelp(const std::vector<std::string>& arguments)
{
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::any_of(arguments.begin(), end,
                       [](const std::string& argument) { return argument == "--help" || argument == "-h"; });
}

const LumactlCommand* commandNamed(const std::string& name)
{
    const auto* const found =
        std::find_if(lumactlCommands.begin(), lumactlCommands.end(),
                     [&name](const LumactlCommand* command) { return command->name == name; });
    return found == lumactlCommands.end() ? nullptr : *found;
}

int unknown(const std::string& name)
{
    return static_cast<int>(unusable("unknown command " + name + "; lumactl help lists them"));
}

int runCommand(const std::string& name, const std::vector<std::string>& arguments)
{
    const LumactlCommand* const command = commandNamed(name);
    if (!command)
        return unknown(name);
    if (asksForHelp(arguments))
        return print(helpOf(*command), ExitCode::Ok);
    return static_cast<int>(command->run(arguments));
}

// "lumactl help" and "lumactl help COMMAND".
int help(const std::vector<std::string>& names)
{
    if (names.empty() || names.front() == "--help" || names.front() == "-h")
        return print(programHelp(), ExitCode::Ok);
    if (names.size() > 1)
        return static_cast<int>(unusable("help takes one command"));
    const LumactlCommand* const command = commandNamed(names.front());
    return command ? print(helpOf(*command), ExitCode::Ok) : unknown(names.front());
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    if (arguments.empty())
        return static_cast<int>(unusable("a command is needed; lumactl help lists them"));
    if (arguments.front() == "--help" || arguments.front() == "-h")
        return print(programHelp(), ExitCode::Ok);
    if (arguments.front() == "help")
        return help({arguments.begin() + 1, arguments.end()});
    if (arguments.front() == "--version")
        return print("lumactl " LUMA_VERSION_TEXT "\n", ExitCode::Ok);
    return runCommand(arguments.front(), {arguments.begin() + 1, arguments.end()});
}
