// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace luma {

/// What a job says, on its way from the job's thread to the screen: text gathers here, and the main thread
/// takes it in lots, in the order in which it came. It remembers which file a line speaks of. A job that runs
/// far ahead of the screen is held up by the callable for a full log. Any thread.
class JobLog final
{
public:
    /// `whenFull` is called on the job's thread and should take(); what nobody took by then is dropped.
    explicit JobLog(std::function<void(JobLog& log)> whenFull) : m_whenFull(std::move(whenFull)) {}

    /// Text with its line feeds.
    void addText(std::string_view text);
    /// One line without its line feed; control characters in it are shown as escapes, so that it stays one.
    /// This line and those up to the next one with a file speak of `file`, unless that is empty.
    void addLine(std::string_view line, std::filesystem::path file = {});

    /// All that was added since it was last called.
    QString take();
    /// The file that line `number`, counted from 0, speaks of; empty when there is none.
    [[nodiscard]] std::filesystem::path fileOfLine(int number) const;

private:
    static constexpr std::size_t mostWaiting = 256UL * 1024; // bytes

    std::function<void(JobLog&)> m_whenFull;
    mutable std::mutex m_mutex;
    std::string m_waiting;
    int m_lines = 0;
    std::vector<std::pair<int, std::filesystem::path>> m_files; // by the number of their first line

    void passOn(bool isFull);
};

} // namespace luma
