// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"
#include "base/stillwanted.h"

#include <sys/types.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace luma {

/// Which of the child's two output streams are collected; one that is not is inherited.
enum class Collected { StandardOutput, StandardError, Both };

/// What to start, and how. Strings are bytes.
struct ChildCommand
{
    std::string executable;              ///< a path; no search
    std::vector<std::string> arguments;  ///< without the executable's name
    std::filesystem::path workingFolder; ///< empty: ours
    Collected collected = Collected::StandardOutput;
    std::optional<std::string_view>
        input; ///< on standard input, as a file that is complete from the start; none: ours is inherited
    StillWanted stillWanted = {}; ///< asked several times a second; "no" ends the child's process group
};

/// One child process and our ends of its pipes. The child leads a new session, so its process group can be
/// ended and no terminal can stop it; it gets descriptors 0 to 2 only, no blocked or ignored signals, and a
/// UTF-8 locale. Its output is read while it runs. All calls block; use it from one thread.
/// terminateRunningChildren() ends it. However it ends, it is reaped.
class ChildProcess final
{
public:
    /// Starts the child.
    explicit ChildProcess(const ChildCommand& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Waits until every process that holds the collected stream has closed it; the child may still be
    /// running. False if the child did not start or was terminated.
    bool waitForEndOfOutput();

    /// Waits until the child has exited and gives its exit status; none if it did not start, died of a signal
    /// or was terminated. Does not wait for processes it left behind with the stream open.
    std::optional<int> waitForExit();

    /// What the child has written since the last call; of both streams, to standard output.
    [[nodiscard]] std::string takeCollected() { return std::exchange(m_collected.text, {}); }
    /// What it has written to standard error, if both streams are collected.
    [[nodiscard]] std::string takeErrors() { return std::exchange(m_errors.text, {}); }

private:
    enum class Ending { NotAsked, Terminated, Killed, GivenUp };
    enum class Awaited { EndOfOutput, Exit };

    struct Stream
    {
        FileDescriptor end;
        std::string text;

        void read(std::size_t atMost);
        void readRest();
    };

    static bool openPipe(FileDescriptor& readEnd, FileDescriptor& writeEnd);
    void start(const ChildCommand& command);
    void spawn(const ChildCommand& command, const std::array<int, 3>& ends);
    bool waitForNextEvent(Awaited awaited);
    [[nodiscard]] int timeoutFor(Awaited awaited) const;
    void endHarder();
    [[nodiscard]] bool hasExited() const;
    std::optional<int> reap();
    void leave();

    pid_t m_pid = -1; // until reaped or left
    FileDescriptor m_exit;
    Stream m_collected;
    Stream m_errors;
    StillWanted m_stillWanted;
    Ending m_ending = Ending::NotAsked;
    std::chrono::steady_clock::time_point m_patienceEnds;
};

/// For quitting: every ChildProcess that is waited for gets SIGTERM, its whole process group, and SIGKILL two
/// seconds later, so that the threads blocked on them return with a failure. From now on no ChildProcess
/// starts. Returns immediately; any thread. Call it after the application's last command and before waiting
/// for the thread pool.
void terminateRunningChildren();

/// Lets children start again after a quit that was called off.
void acceptNewChildren();

} // namespace luma
