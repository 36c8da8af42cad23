#pragma once

#include <string>
#include <vector>

namespace luma {

/// `lumactl publish SOURCE DESTINATION [--download] [--except NAME]...`: copies what `changed` prints, but
/// for the names given. Takes the arguments after the command's name, as bytes; gives the exit status: 0, 1
/// when something could not be copied (named on standard error), 2 for arguments that are of no use.
int publishCommand(const std::vector<std::string>& arguments);

} // namespace luma
