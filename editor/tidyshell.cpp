#include "editor/tidyshell.h"

#include "platform/files.h"
#include "platform/resources.h"
#include "shell/quote.h"
#include "shell/taskwrapper.h"

#include <QStandardPaths>

namespace luma {

std::optional<std::string> runTidyCommand(std::vector<std::string> arguments)
{
    const std::string named = "/opt/homebrew-palisan/bin/php";
    const std::string found = QStandardPaths::findExecutable(QStringLiteral("php")).toStdString();
    if (const std::size_t at = arguments.empty() ? std::string::npos : arguments.back().rfind(named);
        at != std::string::npos && !found.empty() && !itemExists(named))
        arguments.back().replace(at, named.size(), quotedForShell(found));
    TaskWrapper task(resourceFolder());
    task.arguments = std::move(arguments);
    return task.run();
}

} // namespace luma
