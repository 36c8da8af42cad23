// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/tidyshell.h"

#include "base/resources.h"
#include "shell/quote.h"
#include "shell/taskwrapper.h"

#include <QStandardPaths>

#include <unistd.h>

namespace luma {

std::optional<std::string> runTidyCommand(std::vector<std::string> arguments)
{
    std::string& command = arguments.back();
    const std::string found = QStandardPaths::findExecutable(QStringLiteral("php")).toStdString();
    if (const std::size_t at = command.rfind(tidyInterpreter);
        at != std::string::npos && !found.empty() && ::access(tidyInterpreter.data(), X_OK) != 0)
        command.replace(at, tidyInterpreter.size(), quotedForShell(found));
    TaskWrapper task(resourceFolder());
    task.arguments = std::move(arguments);
    return task.run();
}

} // namespace luma
