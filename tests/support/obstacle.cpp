// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/obstacle.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace luma::test {

namespace fs = std::filesystem;

namespace {

constexpr uid_t ordinary = 65534;

int inChild(const std::function<int()>& f)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(f());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 101;
}

bool mountReadOnly(const fs::path& folder)
{
    if (::unshare(::getuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0)
        return false;
    const char* const path = folder.c_str();
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount(path, path, nullptr, MS_BIND, nullptr) == 0 &&
           ::mount(nullptr, path, nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

} // namespace

bool giveToOrdinaryUser(const Site& site)
{
    if (::getuid() != 0)
        return true;
    bool isDone = ::chown(site.root().c_str(), ordinary, ordinary) == 0;
    for (const auto& entry : fs::recursive_directory_iterator(site.root()))
        isDone = ::chown(entry.path().c_str(), ordinary, ordinary) == 0 && isDone;
    return isDone;
}

int asOrdinaryUser(const std::function<int()>& f)
{
    return inChild([&f] {
        const bool isRoot = ::getuid() == 0;
        return isRoot && (::setgid(ordinary) != 0 || ::setuid(ordinary) != 0) ? 100 : f();
    });
}

Obstacle::Obstacle(const Site& site, std::string_view page, Kind kind) : m_page(site.at(page)), m_kind(kind)
{
    const bool isRoot = ::getuid() == 0;
    m_isThere = giveToOrdinaryUser(site);
    switch (kind) {
    case Kind::None:
        break;
    case Kind::ReadOnlyPage:
        fs::permissions(m_page, fs::perms(0444));
        break;
    case Kind::ReadOnlyFolder:
        fs::permissions(m_page.parent_path(), fs::perms(0555));
        break;
    case Kind::StickyFolder:
        fs::permissions(m_page, fs::perms(0666));
        fs::permissions(m_page.parent_path(), fs::perms(01777));
        m_isThere =
            isRoot && ::chown(m_page.c_str(), 0, 0) == 0 && ::chown(m_page.parent_path().c_str(), 0, 0) == 0;
        break;
    case Kind::ImmutablePage:
    case Kind::GrowingPage:
    case Kind::GrowingFolder:
        m_isThere = setFlag(true);
        break;
    case Kind::ReadOnlyMount:
        m_isThere = inChild([this] { return mountReadOnly(m_page.parent_path()) ? 1 : 0; }) == 1;
        break;
    }
}

Obstacle::~Obstacle()
{
    (void)setFlag(false);
    std::error_code error;
    fs::permissions(m_page.parent_path(), fs::perms(0755), error);
}

Obstacle::Kind Obstacle::forAll()
{
    return ::getuid() == 0 ? Kind::ImmutablePage : Kind::ReadOnlyPage;
}

fs::path Obstacle::obstructed() const
{
    return m_kind == Kind::GrowingFolder ? m_page.parent_path() : m_page;
}

bool Obstacle::setFlag(bool isOn) const
{
    const bool isImmutable = m_kind == Kind::ImmutablePage;
    if (!isImmutable && m_kind != Kind::GrowingPage && m_kind != Kind::GrowingFolder)
        return true;
    const unsigned flag = isImmutable ? FS_IMMUTABLE_FL : FS_APPEND_FL;
    const int file = ::open(obstructed().c_str(), O_RDONLY | O_CLOEXEC);
    unsigned flags = 0;
    bool isDone = ::ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
    flags = isOn ? flags | flag : flags & ~flag;
    isDone = isDone && ::ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
    ::close(file);
    return isDone;
}

int Obstacle::run(const std::function<int()>& f) const
{
    if (m_kind == Kind::ReadOnlyMount)
        return inChild([&] { return mountReadOnly(m_page.parent_path()) ? f() : 100; });
    return asOrdinaryUser(f);
}

} // namespace luma::test
