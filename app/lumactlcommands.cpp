#include "app/lumactlcommands.h"

#include "app/changedcommand.h"
#include "app/publishcommand.h"

#include <array>

namespace luma {

const LumactlCommand changedEntry = {
    "changed", "SOURCE DESTINATION [--download]", "lists the files that a transfer would copy", {},
    [](const std::vector<std::string>& arguments) { return static_cast<ExitCode>(changedCommand(arguments)); }};
const LumactlCommand publishEntry = {
    "publish", "SOURCE DESTINATION [--download] [--except NAME]...", "copies them", {},
    [](const std::vector<std::string>& arguments) { return static_cast<ExitCode>(publishCommand(arguments)); }};

std::span<const LumactlCommand* const> lumactlCommands()
{
    static constexpr auto commands =
        std::to_array<const LumactlCommand*>({&changedEntry, &publishEntry, &linksFromCommand, &checkCommand, &linksToCommand,
                                              &unlinkedCommand, &moveCommand, &copyCommand, &renameCommand});
    return commands;
}

} // namespace luma
