// SPDX-License-Identifier: GPL-3.0-or-later
#include "lumactl/syncarguments.h"
#include "lumactl/standardoutput.h"

namespace luma {

std::optional<SyncFolders> syncFolders(const LumactlCommand& command, const CommandArguments& arguments)
{
    if (!arguments.error().empty() || arguments.operands().size() != 2) {
        wrongUsage(command, arguments.error().empty() ? "a source folder and a destination folder are needed"
                                                      : arguments.error());
        return std::nullopt;
    }
    const auto source = siteFolder(arguments.operands()[0]);
    const auto destination = source ? siteFolder(arguments.operands()[1]) : std::nullopt;
    if (!source || !destination)
        return std::nullopt;
    return arguments.has("--download") ? SyncFolders{*destination, *source}
                                       : SyncFolders{*source, *destination};
}

} // namespace luma
