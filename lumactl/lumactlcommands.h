// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// What lumactl gives back to the shell.
enum class ExitCode : int {
    Ok = 0,
    Found = 1,   // something is missing, unlinked or could not be done
    Unusable = 2 // arguments that make no sense, or a site that can't be read
};

/// One command of lumactl: `run` gets the arguments behind the command's name, never "--help".
struct LumactlCommand
{
    std::string_view name;
    std::string_view usage; // the arguments, for the line "lumactl NAME USAGE"
    std::string_view summary;
    std::string_view help; // what the usage leaves open, lines of at most 80 characters
    ExitCode (*run)(const std::vector<std::string>& arguments);
};

extern const LumactlCommand changedCommand;
extern const LumactlCommand publishCommand;
extern const LumactlCommand linksFromCommand;
extern const LumactlCommand checkCommand;
extern const LumactlCommand linksToCommand;
extern const LumactlCommand unlinkedCommand;
extern const LumactlCommand moveCommand;
extern const LumactlCommand copyCommand;
extern const LumactlCommand renameCommand;

/// In the order of lumactl's help. A new command is a file of its own, an extern line above and an entry
/// here.
std::span<const LumactlCommand* const> lumactlCommands();

} // namespace luma
