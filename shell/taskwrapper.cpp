// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/taskwrapper.h"

#include "base/utf8.h"
#include "shell/childprocess.h"

#include <utility>

namespace luma {

namespace {

constexpr auto shell = "/bin/zsh";

void removeLastCharacter(std::string& text)
{
    while (isUtf8Continuation(text.back()))
        text.pop_back();
    text.pop_back();
}

} // namespace

TaskWrapper::TaskWrapper(std::filesystem::path workingFolder, Errors errors)
    : m_workingFolder(std::move(workingFolder)), m_errors(errors)
{}

TaskWrapper::~TaskWrapper() = default;

std::optional<std::string> TaskWrapper::run()
{
    if (m_task)
        return std::nullopt;
    const Collected collected = m_errors == Errors::Ignored ? Collected::Both : Collected::StandardOutput;
    m_task = std::make_unique<ChildProcess>(
        ChildCommand{shell, arguments, m_workingFolder, collected, std::string_view()});
    if (!m_task->waitForEndOfOutput())
        return std::nullopt;
    std::string output = m_task->takeCollected();
    if (output.empty() || !isValidUtf8(output))
        return std::nullopt;
    removeLastCharacter(output);
    return output;
}

CommandRunner shellRunner(std::filesystem::path workingFolder)
{
    return [folder = std::move(workingFolder)](const std::vector<std::string>& words) {
        TaskWrapper task(folder, TaskWrapper::Errors::Ignored);
        task.arguments = words;
        return task.run().value_or(std::string());
    };
}

} // namespace luma
