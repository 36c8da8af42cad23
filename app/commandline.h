// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace luma {

/// The request on the command line.
struct CommandLine
{
    enum class Request { SiteList, Folders, Page, Item, Help, Version, Unusable };

    Request request = Request::SiteList;
    std::filesystem::path source;
    std::filesystem::path destination;
    std::filesystem::path page;
    std::filesystem::path item; ///< another file, or a folder
    std::string message;        ///< the error, for standard error, if unusable
};

/// Reads the arguments, without the program's name. The named folders or file must exist.
CommandLine readCommandLine(const std::vector<std::string>& arguments);

/// The arguments that ask for the same from every working folder. Empty for the list of sites.
std::vector<std::string> argumentsFor(const CommandLine& line);

/// Whether the request is answered on the terminal (help or version).
bool isAnsweredOnTerminal(const std::vector<std::string>& arguments);

extern const char* const usageText;

} // namespace luma
