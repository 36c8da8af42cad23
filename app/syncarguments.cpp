#include "app/syncarguments.h"

#include <filesystem>
#include <utility>

namespace luma {

namespace {

Result<void> checkFolder(const std::string& path)
{
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        return {};
    return Error{path + ": " + (error ? error.message() : std::string("not a folder"))};
}

} // namespace

Result<SyncCommandArguments> readSyncArguments(const std::vector<std::string>& arguments,
                                               ExceptOption exceptOption)
{
    SyncCommandArguments read;
    std::vector<std::string> paths;
    bool isDownload = false;
    bool takesOptions = true;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (!takesOptions || !argument->starts_with('-')) {
            paths.push_back(*argument);
        } else if (*argument == "--") {
            takesOptions = false;
        } else if (*argument == "--help") {
            read.wantsHelp = true;
            return read;
        } else if (*argument == "--download") {
            isDownload = true;
        } else if (*argument == "--except" && exceptOption == ExceptOption::Taken) {
            if (++argument == arguments.end())
                return Error{"--except needs a name"};
            read.exceptions.push_back(*argument);
        } else {
            return Error{*argument + ": unknown option"};
        }
    }
    if (paths.size() != 2)
        return Error{"a source folder and a destination folder are needed"};
    for (const std::string& path : paths) {
        if (auto checked = checkFolder(path); !checked)
            return checked.error();
    }
    read.folders = {paths[isDownload ? 1 : 0], paths[isDownload ? 0 : 1]};
    return read;
}

} // namespace luma
