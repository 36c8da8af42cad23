// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/commandline.h"

#include "app/documentcontroller.h"

#include <algorithm>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

const char* const usageText = R"(Usage: luma [SOURCE DESTINATION | PAGE | LIST | FILE]

LUMA manages web sites kept as folders: it publishes changes, updates links when
files move, and edits pages.

  luma                      show the list of sites
  luma SOURCE DESTINATION   open two folders as a site, without adding it to the list
  luma PAGE                 open a page (.html, .xhtml, .xml)
  luma LIST                 add the sites of an exported list (.lumasites)
  luma FILE                 show another file, or a folder, in the window of its site

  -h, --help                print this help
  -v, --version             print the version
)";

namespace {

CommandLine unusable(const std::string& message)
{
    CommandLine line;
    line.request = CommandLine::Request::Unusable;
    line.message = message;
    return line;
}

CommandLine foldersIn(const std::vector<std::string>& names)
{
    CommandLine line;
    line.request = CommandLine::Request::Folders;
    std::error_code error;
    for (const std::string& name : names) {
        if (!fs::is_directory(name, error))
            return unusable(name + ": not a folder");
    }
    line.source = fs::canonical(names[0], error);
    line.destination = fs::canonical(names[1], error);
    if (line.source == line.destination)
        return unusable("source and destination are the same folder");
    return line;
}

CommandLine fileIn(const std::string& name)
{
    CommandLine line;
    std::error_code error;
    if (!fs::exists(name, error))
        return unusable(name + ": no such file or folder");
    const fs::path path = fs::absolute(name, error).lexically_normal();
    if (fs::is_regular_file(path, error) && DocumentController::isPage(path)) {
        line.request = CommandLine::Request::Page;
        line.page = path;
    } else {
        line.request = CommandLine::Request::Item;
        // A folder's path may end with a slash.
        line.item = path.has_filename() ? path : path.parent_path();
    }
    return line;
}

bool isHelp(const std::string& argument)
{
    return argument == "--help" || argument == "-h";
}

bool isVersion(const std::string& argument)
{
    return argument == "--version" || argument == "-v";
}

} // namespace

bool isAnsweredOnTerminal(const std::vector<std::string>& arguments)
{
    return std::any_of(arguments.begin(), std::find(arguments.begin(), arguments.end(), "--"),
                       [](const std::string& argument) { return isHelp(argument) || isVersion(argument); });
}

std::vector<std::string> argumentsFor(const CommandLine& line)
{
    switch (line.request) {
    case CommandLine::Request::Folders:
        return {line.source.string(), line.destination.string()};
    case CommandLine::Request::Page:
        return {line.page.string()};
    case CommandLine::Request::Item:
        return {line.item.string()};
    default:
        return {};
    }
}

CommandLine readCommandLine(const std::vector<std::string>& arguments)
{
    std::vector<std::string> names;
    bool options = true;
    for (const std::string& argument : arguments) {
        CommandLine line;
        if (options && argument == "--") {
            options = false;
        } else if (options && (isHelp(argument) || isVersion(argument))) {
            line.request = isHelp(argument) ? CommandLine::Request::Help : CommandLine::Request::Version;
            return line;
        } else if (options && argument.size() > 1 && argument.front() == '-') {
            return unusable("unknown option " + argument);
        } else {
            names.push_back(argument);
        }
    }
    switch (names.size()) {
    case 0:
        return {};
    case 1:
        return fileIn(names[0]);
    case 2:
        return foldersIn(names);
    default:
        return unusable("too many arguments");
    }
}

} // namespace luma
