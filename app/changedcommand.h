#pragma once

#include <string>
#include <vector>

namespace luma {

/// `lumactl changed SOURCE DESTINATION [--download]`: prints the files that a transfer would copy, one shown
/// name a line. Takes the arguments after the command's name, as bytes; gives the exit status: 0, 1 when
/// something could not be compared (named on standard error), 2 for arguments that are of no use.
int changedCommand(const std::vector<std::string>& arguments);

} // namespace luma
