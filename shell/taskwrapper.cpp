// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/taskwrapper.h"

#include "shell/childprocess.h"

#include <QUtf8StringView>

#include <utility>

namespace luma {

namespace {

constexpr auto shell = "/bin/zsh";

// A character of UTF-8 is one byte and the continuation bytes (10xxxxxx) that follow it.
void removeLastCharacter(std::string& text)
{
    while ((static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U)
        text.pop_back();
    text.pop_back();
}

} // namespace

TaskWrapper::TaskWrapper(std::filesystem::path workingFolder) : m_workingFolder(std::move(workingFolder)) {}

TaskWrapper::~TaskWrapper() = default;

std::optional<std::string> TaskWrapper::run()
{
    if (m_task)
        return std::nullopt;
    m_task = std::make_unique<ChildProcess>(
        ChildCommand{shell, arguments, m_workingFolder, Collected::StandardOutput, std::string_view()});
    if (!m_task->waitForEndOfOutput())
        return std::nullopt;
    std::string output = m_task->takeCollected();
    if (output.empty() || !QUtf8StringView(output).isValidUtf8())
        return std::nullopt;
    removeLastCharacter(output);
    return output;
}

} // namespace luma
