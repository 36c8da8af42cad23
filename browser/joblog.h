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

/// The log of a job on its way from the job's thread to the screen: text collects here, and the main thread
/// takes it in batches, in order. Remembers which file a line is about. A job that gets far ahead of the
/// screen has to wait in `whenFull`. Any thread.
class JobLog final
{
public:
    /// `whenFull` is called on the job's thread and should call take(); text not taken then is dropped.
    explicit JobLog(std::function<void(JobLog& log)> whenFull) : m_whenFull(std::move(whenFull)) {}

    /// Text with its line feeds.
    void addText(std::string_view text);
    /// One line without its line feed; control characters become visible escapes, so that it stays one line.
    /// Unless `file` is empty, this line and those up to the next line with a file are about `file`.
    void addLine(std::string_view line, std::filesystem::path file = {});

    /// The text added since the last call.
    QString take();
    /// The file that line `number`, counted from 0, is about; empty for none.
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
