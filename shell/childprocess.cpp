// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/childprocess.h"

#include <fcntl.h>
#include <langinfo.h>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale() is POSIX, not C++
#include <poll.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <thread>
#include <utility>

namespace luma {

namespace {

constexpr int firstFreeDescriptor = 3;
constexpr std::chrono::seconds patience(2);
// How often to look for a child's exit if the kernel gives no descriptor for it.
constexpr int exitPollMilliseconds = 20;
// How often to ask whether the child is still wanted.
constexpr int wantedPollMilliseconds = 100;

// Readable after terminateRunningChildren(). Never closed, because other threads may poll it until the process
// ends.
int terminationEvent()
{
    static const int event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return event;
}

bool isTerminating()
{
    pollfd event = {terminationEvent(), POLLIN, 0};
    return ::poll(&event, 1, 0) > 0;
}

// Asks the C library, because a variable may name a locale that is not installed.
bool localeIsUtf8()
{
    const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (!locale)
        return false;
    const bool isUtf8 = std::string_view(::nl_langinfo_l(CODESET, locale)) == "UTF-8";
    ::freelocale(locale);
    return isUtf8;
}

// Our environment as "NAME=value" strings, with a UTF-8 locale: ours if it is one, else C.UTF-8. Programs such
// as rsync print file names unescaped only then.
std::vector<std::string> childEnvironment()
{
    std::vector<std::string> environment;
    for (char** entry = environ; entry && *entry; ++entry)
        environment.emplace_back(*entry);
    if (localeIsUtf8())
        return environment;
    // LC_ALL outranks LC_CTYPE; where it is not set, the language of messages stays the user's.
    const char* all = std::getenv("LC_ALL");
    const std::string name = all && *all ? "LC_ALL=" : "LC_CTYPE=";
    std::erase_if(environment, [&](const std::string& entry) { return entry.starts_with(name); });
    environment.push_back(name + "C.UTF-8");
    return environment;
}

// Pointers to the strings with a null pointer at the end, as exec takes them.
std::vector<char*> pointersTo(std::vector<std::string>& strings)
{
    std::vector<char*> pointers;
    pointers.reserve(strings.size() + 1);
    for (std::string& string : strings)
        pointers.push_back(string.data());
    pointers.push_back(nullptr);
    return pointers;
}

void setNonBlocking(int descriptor)
{
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
}

// A file without a name that holds `input`. The child finds it whole even if we are killed while it reads; the
// beginning of a list of names could end with the name of another file.
FileDescriptor inputFile(std::string_view input)
{
    const FileDescriptor low(::memfd_create("input", MFD_CLOEXEC));
    while (low && !input.empty()) {
        const ssize_t count = ::write(low.get(), input.data(), input.size());
        if (count < 0 && errno != EINTR)
            return {};
        input.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    ::lseek(low.get(), 0, SEEK_SET);
    // Above 2, as the pipes' ends.
    return FileDescriptor(::fcntl(low.get(), F_DUPFD_CLOEXEC, firstFreeDescriptor));
}

// The child's descriptors 0 to 2: those that we made, our own, or /dev/null where ours is closed.
void addDescriptors(posix_spawn_file_actions_t& actions, const std::array<int, firstFreeDescriptor>& ends)
{
    for (int target = 0; target < firstFreeDescriptor; ++target) {
        const int end = ends[static_cast<std::size_t>(target)];
        if (end >= 0)
            ::posix_spawn_file_actions_adddup2(&actions, end, target);
        else if (::fcntl(target, F_GETFD) < 0)
            ::posix_spawn_file_actions_addopen(&actions, target, "/dev/null", O_RDWR, 0);
        else // a copy onto itself clears the close-on-exec flag
            ::posix_spawn_file_actions_adddup2(&actions, target, target);
    }
    ::posix_spawn_file_actions_addclosefrom_np(&actions, firstFreeDescriptor);
}

void setAttributes(posix_spawnattr_t& attributes)
{
    sigset_t none = {};
    ::sigemptyset(&none);
    sigset_t all = {};
    ::sigfillset(&all);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setflags(
        &attributes, static_cast<short>(POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
}

} // namespace

ChildProcess::ChildProcess(const ChildCommand& command) : m_stillWanted(command.stillWanted)
{
    if (!isTerminating())
        start(command);
}

ChildProcess::~ChildProcess()
{
    leave();
}

// Both ends are above 2, so that copying one to 0, 1 or 2 never overwrites the other.
bool ChildProcess::openPipe(FileDescriptor& readEnd, FileDescriptor& writeEnd)
{
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return false;
    for (int& end : ends) {
        const FileDescriptor low(end);
        end = ::fcntl(low.get(), F_DUPFD_CLOEXEC, firstFreeDescriptor);
    }
    readEnd.reset(ends[0]);
    writeEnd.reset(ends[1]);
    return readEnd && writeEnd;
}

void ChildProcess::start(const ChildCommand& command)
{
    FileDescriptor childInput;
    FileDescriptor childOutput;
    FileDescriptor childErrors;
    const bool collectsBoth = command.collected == Collected::Both;
    if (!openPipe(m_collected.end, childOutput) || (collectsBoth && !openPipe(m_errors.end, childErrors)) ||
        (command.input && !(childInput = inputFile(*command.input))))
        return;
    for (const FileDescriptor* const end : {&m_collected.end, &m_errors.end}) {
        if (*end)
            setNonBlocking(end->get());
    }
    const bool collectsErrors = command.collected == Collected::StandardError;
    spawn(command, {childInput.get(), collectsErrors ? -1 : childOutput.get(),
                    collectsErrors ? childOutput.get() : childErrors.get()});
    if (m_pid > 0)
        m_exit.reset(static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0)));
}

void ChildProcess::spawn(const ChildCommand& command, const std::array<int, 3>& ends)
{
    std::vector<std::string> words = {command.executable};
    words.insert(words.end(), command.arguments.begin(), command.arguments.end());
    std::vector<std::string> environment = childEnvironment();

    posix_spawn_file_actions_t actions = {};
    ::posix_spawn_file_actions_init(&actions);
    addDescriptors(actions, ends);
    if (!command.workingFolder.empty())
        ::posix_spawn_file_actions_addchdir_np(&actions, command.workingFolder.c_str());
    posix_spawnattr_t attributes = {};
    ::posix_spawnattr_init(&attributes);
    setAttributes(attributes);
    pid_t pid = -1;
    if (::posix_spawn(&pid, command.executable.c_str(), &actions, &attributes, pointersTo(words).data(),
                      pointersTo(environment).data()) == 0)
        m_pid = pid;
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
}

// Waits for the next event and handles it. False if the child did not end even when killed and is given up.
bool ChildProcess::waitForNextEvent(Awaited awaited)
{
    const bool isEnding = m_ending != Ending::NotAsked;
    const bool looksForExit = awaited == Awaited::Exit || isEnding;
    std::array<pollfd, 4> events = {{{m_collected.end.get(), POLLIN, 0},
                                     {m_errors.end.get(), POLLIN, 0},
                                     {looksForExit ? m_exit.get() : -1, POLLIN, 0},
                                     {isEnding ? -1 : terminationEvent(), POLLIN, 0}}};
    if (::poll(events.data(), events.size(), timeoutFor(awaited)) < 0)
        return errno == EINTR;
    if (events[0].revents != 0)
        m_collected.read(SIZE_MAX);
    if (events[1].revents != 0)
        m_errors.read(SIZE_MAX);
    const bool isUnwanted = !isEnding && !isWanted(m_stillWanted);
    if (isUnwanted || events[3].revents != 0 ||
        (isEnding && std::chrono::steady_clock::now() >= m_patienceEnds))
        endHarder();
    return m_ending != Ending::GivenUp;
}

int ChildProcess::timeoutFor(Awaited awaited) const
{
    const bool isEnding = m_ending != Ending::NotAsked;
    if (!m_exit && (isEnding || awaited == Awaited::Exit))
        return exitPollMilliseconds;
    if (!isEnding)
        return m_stillWanted ? wantedPollMilliseconds : -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(m_patienceEnds - std::chrono::steady_clock::now());
    return std::max(0, static_cast<int>(left.count()));
}

// One read at a time, so that an endless stream cannot hold up other events.
void ChildProcess::Stream::read(std::size_t atMost)
{
    std::array<char, 65536> buffer;
    const ssize_t count = ::read(end.get(), buffer.data(), std::min(atMost, buffer.size()));
    if (count > 0)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    else if (count == 0 || (errno != EAGAIN && errno != EINTR))
        end.reset();
}

// All that the child wrote is in the pipe by now; any more would come from processes it left behind.
void ChildProcess::Stream::readRest()
{
    int rest = 0;
    if (!end || ::ioctl(end.get(), FIONREAD, &rest) != 0)
        return;
    const std::size_t whole = text.size() + static_cast<std::size_t>(rest);
    while (end && text.size() < whole)
        read(whole - text.size());
}

// The child is not reaped yet, so its id cannot belong to another process.
void ChildProcess::endHarder()
{
    m_patienceEnds = std::chrono::steady_clock::now() + patience;
    switch (m_ending) {
    case Ending::NotAsked:
        m_ending = Ending::Terminated;
        ::kill(-m_pid, SIGTERM);
        break;
    case Ending::Terminated:
        m_ending = Ending::Killed;
        ::kill(-m_pid, SIGKILL);
        break;
    case Ending::Killed:
    case Ending::GivenUp:
        m_ending = Ending::GivenUp;
        break;
    }
}

bool ChildProcess::hasExited() const
{
    siginfo_t information = {};
    const int answer = ::waitid(P_PID, static_cast<id_t>(m_pid), &information, WEXITED | WNOHANG | WNOWAIT);
    return answer != 0 || information.si_pid == m_pid;
}

std::optional<int> ChildProcess::reap()
{
    int status = 0;
    const pid_t pid = std::exchange(m_pid, -1);
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return std::nullopt;
    }
    return WIFEXITED(status) ? std::optional<int>(WEXITSTATUS(status)) : std::nullopt;
}

// Stops waiting for the child; it is reaped when it ends.
void ChildProcess::leave()
{
    const pid_t pid = std::exchange(m_pid, -1);
    if (pid > 0 && ::waitpid(pid, nullptr, WNOHANG) == 0)
        std::thread([pid] { ::waitpid(pid, nullptr, 0); }).detach();
}

bool ChildProcess::waitForEndOfOutput()
{
    if (m_pid < 0)
        return false;
    while (m_collected.end && !(m_ending != Ending::NotAsked && hasExited())) {
        if (!waitForNextEvent(Awaited::EndOfOutput))
            break;
    }
    leave();
    return !m_collected.end && m_ending == Ending::NotAsked;
}

std::optional<int> ChildProcess::waitForExit()
{
    if (m_pid < 0)
        return std::nullopt;
    while (!hasExited()) {
        if (!waitForNextEvent(Awaited::Exit))
            return std::nullopt;
    }
    m_collected.readRest();
    m_errors.readRest();
    const std::optional<int> status = reap();
    return m_ending == Ending::NotAsked ? status : std::nullopt;
}

void terminateRunningChildren()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = ::write(terminationEvent(), &one, sizeof one);
}

void acceptNewChildren()
{
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t taken = ::read(terminationEvent(), &count, sizeof count);
}

} // namespace luma
