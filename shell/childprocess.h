// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace luma {

/// Which of the child's two output streams its runner collects; the other one is inherited.
enum class Collected { StandardOutput, StandardError };

/// What to start, with which ends. Strings are bytes.
struct ChildCommand
{
    std::string executable;              ///< its path; there is no search
    std::vector<std::string> arguments;  ///< without the executable's name
    std::filesystem::path workingFolder; ///< empty: ours
    Collected collected = Collected::StandardOutput;
    std::optional<std::string_view> input; ///< what standard input, a pipe, carries; none: ours is inherited
};

/// One child process of a runner, and our ends of its pipes. The child leads a session of its own (one
/// process group to end, no terminal to be stopped by), gets descriptors 0 to 2 alone, no blocked or ignored
/// signal, and a UTF-8 locale. What it writes is taken while it runs. The calls block; use it from one
/// thread. terminateRunningChildren() ends it. However it ends, it is reaped.
class ChildProcess final
{
public:
    /// Starts the child. What `command.input` points to must outlive this object.
    explicit ChildProcess(const ChildCommand& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Waits until everybody who holds the collected stream has closed it; the child may go on without it.
    /// False when nothing was started, or a termination came first.
    bool waitForEndOfOutput();

    /// Waits until the child has exited and takes what it wrote until then; whoever it left behind with the
    /// stream open is not waited for. The exit status; none when nothing was started, after a signal, or when
    /// a termination came first.
    std::optional<int> waitForExit();

    /// What the child has written, handed over.
    [[nodiscard]] std::string takeCollected() { return std::exchange(m_collected, {}); }

private:
    enum class Ending { NotAsked, Terminated, Killed, GivenUp };
    enum class Awaited { EndOfOutput, Exit };

    static bool openPipe(FileDescriptor& readEnd, FileDescriptor& writeEnd);
    void start(const ChildCommand& command);
    void spawn(const ChildCommand& command, int inputEnd, int collectedEnd);
    bool waitForNextEvent(Awaited awaited);
    [[nodiscard]] int timeoutFor(Awaited awaited) const;
    void readCollected(std::size_t atMost);
    void takeRestOfOutput();
    void writeInput();
    void endHarder();
    [[nodiscard]] bool hasExited() const;
    std::optional<int> reap();
    void leave();

    pid_t m_pid = -1; // until reaped or left
    FileDescriptor m_exit;
    FileDescriptor m_output;
    FileDescriptor m_inputEnd;
    std::string_view m_input;
    std::string m_collected;
    Ending m_ending = Ending::NotAsked;
    std::chrono::steady_clock::time_point m_patienceEnds;
};

} // namespace luma
