#pragma once

#include "platform/result.h"
#include "site/foldercomparison.h"

#include <string>
#include <vector>

namespace luma {

/// What `lumactl changed` and `lumactl publish` are given on the command line.
struct SyncCommandArguments
{
    SyncFolders folders;
    std::vector<std::string> exceptions; ///< names left out
    bool wantsHelp = false;
};

enum class ExceptOption { Refused, Taken };

/// Reads the arguments after the command's name. An option that is not known, a missing value and any
/// number of folders but two are errors. "--" ends the options.
Result<SyncCommandArguments> readSyncArguments(const std::vector<std::string>& arguments,
                                               ExceptOption exceptOption);

} // namespace luma
