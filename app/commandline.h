// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace luma {

/// What the user asked for on the command line.
struct CommandLine
{
    enum class Request { SiteList, Folders, Page, Help, Version, Unusable };

    Request request = Request::SiteList;
    std::filesystem::path source;
    std::filesystem::path destination;
    std::filesystem::path page;
    std::string message; ///< why it is unusable, for standard error
};

/// Reads the arguments, without the program's name. Folders and pages are looked at: what is named must be
/// there.
CommandLine readCommandLine(const std::vector<std::string>& arguments);

/// True when the answer needs no screen: help, version.
bool isAnsweredOnTerminal(const std::vector<std::string>& arguments);

extern const char* const usageText;

} // namespace luma
