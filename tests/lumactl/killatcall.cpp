// SPDX-License-Identifier: GPL-3.0-or-later
// A library to preload: ends the process without warning at one of its calls that change files. LUMA_KILL_AT is the number of
// the call, from 1. Of a write, the first half is made.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

bool isLastCall()
{
    static std::atomic<long> calls = 0;
    static const char* const text = std::getenv("LUMA_KILL_AT");
    static const long last = text ? std::strtol(text, nullptr, 10) : 0;
    return ++calls == last;
}

void countCall()
{
    if (isLastCall())
        ::kill(::getpid(), SIGKILL);
}

template <class Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

// NOLINTBEGIN(bugprone-macro-parentheses, readability-inconsistent-declaration-parameter-name)
#define COUNTED(Result, name, parameters, arguments)                                                         \
    Result name parameters                                                                                   \
    {                                                                                                        \
        static auto* const real = next<Result parameters>(#name);                                            \
        countCall();                                                                                         \
        return real arguments;                                                                               \
    }

#define COUNTED_OPEN(name)                                                                                   \
    int name(const char* path, int flags, ...)                                                               \
    {                                                                                                        \
        static auto* const real = next<int(const char*, int, ...)>(#name);                                   \
        std::va_list rest;                                                                                   \
        va_start(rest, flags);                                                                               \
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;                               \
        va_end(rest);                                                                                        \
        if ((flags & O_CREAT) != 0)                                                                          \
            countCall();                                                                                     \
        return real(path, flags, mode);                                                                      \
    }

extern "C" {

COUNTED_OPEN(open)
COUNTED_OPEN(open64)

int openat(int folder, const char* path, int flags, ...)
{
    static auto* const real = next<int(int, const char*, int, ...)>("openat");
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    if ((flags & O_CREAT) != 0)
        countCall();
    return real(folder, path, flags, mode);
}

COUNTED(int, mkostemp, (char* name, int flags), (name, flags))
COUNTED(int, mkostemp64, (char* name, int flags), (name, flags))
COUNTED(int, mkstemp, (char* name), (name))
COUNTED(int, mkstemp64, (char* name), (name))
COUNTED(char*, mkdtemp, (char* name), (name))
COUNTED(int, mkdirat, (int folder, const char* path, mode_t mode), (folder, path, mode))
COUNTED(int, mkdir, (const char* path, mode_t mode), (path, mode))
COUNTED(int, link, (const char* from, const char* to), (from, to))
COUNTED(int, rename, (const char* from, const char* to), (from, to))
COUNTED(int, renameat, (int a, const char* from, int b, const char* to), (a, from, b, to))
COUNTED(int, renameat2, (int a, const char* from, int b, const char* to, unsigned flags),
        (a, from, b, to, flags))
COUNTED(int, unlink, (const char* path), (path))
COUNTED(int, unlinkat, (int folder, const char* path, int flags), (folder, path, flags))
COUNTED(int, remove, (const char* path), (path))
COUNTED(int, rmdir, (const char* path), (path))
COUNTED(int, symlink, (const char* to, const char* path), (to, path))
COUNTED(int, fsync, (int file), (file))
COUNTED(int, fdatasync, (int file), (file))
COUNTED(int, fchmod, (int file, mode_t mode), (file, mode))
COUNTED(int, futimens, (int file, const timespec* times), (file, times))
COUNTED(int, utimensat, (int folder, const char* path, const timespec* times, int flags),
        (folder, path, times, flags))
COUNTED(int, truncate, (const char* path, off_t size), (path, size))

ssize_t write(int file, const void* bytes, size_t size)
{
    static auto* const real = next<ssize_t(int, const void*, size_t)>("write");
    struct stat status = {};
    if (file > STDERR_FILENO && ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && isLastCall()) {
        (void)real(file, bytes, size / 2);
        ::kill(::getpid(), SIGKILL);
    }
    return real(file, bytes, size);
}

} // extern "C"
// NOLINTEND(bugprone-macro-parentheses, readability-inconsistent-declaration-parameter-name)
