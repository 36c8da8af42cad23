// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// What lumactl returns to the shell.
enum class ExitCode : int {
    Ok = 0,
    Found = 1,   // something is missing or unlinked, or could not be done
    Unusable = 2 // wrong arguments, or a site that can't be read
};

/// One command of lumactl.
struct LumactlCommand
{
    std::string_view name;
    std::string_view usage; // the arguments, as in "lumactl NAME USAGE"
    std::string_view summary;
    std::string_view help; // what usage and summary leave open; lines of at most 80 characters
    // Gets the arguments after the name, never "--help".
    ExitCode (*run)(const std::vector<std::string>& arguments);
    bool isReport = false; // has the options of every report (reportoptions.h)
};

extern const LumactlCommand changedCommand;
extern const LumactlCommand publishCommand;
extern const LumactlCommand restoreCommand;
extern const LumactlCommand linksFromCommand;
extern const LumactlCommand checkCommand;
extern const LumactlCommand linksToCommand;
extern const LumactlCommand unlinkedCommand;
extern const LumactlCommand moveCommand;
extern const LumactlCommand copyCommand;
extern const LumactlCommand renameCommand;
extern const LumactlCommand renameClassCommand;
extern const LumactlCommand relinkCommand;
extern const LumactlCommand findCommand;
extern const LumactlCommand undoCommand;
extern const LumactlCommand editCommand;
extern const LumactlCommand sitesCommand;

/// All commands, in the order of the help. To add one, write a file for it, name the file in CMakeLists.txt and
/// the command here and above.
inline constexpr auto lumactlCommands = std::to_array<const LumactlCommand*>(
    {&changedCommand, &publishCommand, &restoreCommand, &linksFromCommand, &checkCommand, &linksToCommand,
     &unlinkedCommand, &moveCommand, &copyCommand, &renameCommand, &renameClassCommand, &relinkCommand,
     &findCommand, &undoCommand, &editCommand, &sitesCommand});

} // namespace luma
