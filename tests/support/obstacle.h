// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/site.h"

#include <filesystem>
#include <functional>

namespace luma::test {

/// Gives all of a site to the user that asOrdinaryUser() takes, if the test runs as root.
bool giveToOrdinaryUser(const Site& site);
/// Runs `f` in a child process as an ordinary user and returns what it returns, from 0 to 99.
int asOrdinaryUser(const std::function<int()>& f);

/// Something real that keeps a program from replacing a page of a site, or nothing. It goes with the object.
class Obstacle final
{
public:
    enum class Kind {
        None,
        ReadOnlyPage,
        ReadOnlyFolder,
        StickyFolder, // of another user, as the page is
        ImmutablePage,
        GrowingPage, // may only be appended to
        GrowingFolder,
        ReadOnlyMount // of the page's folder
    };

    Obstacle(const Site& site, std::string_view page, Kind kind);
    Obstacle(const Obstacle&) = delete;
    Obstacle& operator=(const Obstacle&) = delete;
    ~Obstacle();

    /// One that stands in the way of this process as well.
    static Kind forAll();

    /// Whether this machine has such a thing: flags of a file and mounts need root and a file system.
    [[nodiscard]] bool isThere() const { return m_isThere; }
    /// Runs `f` in a child process that it stands in the way of, and returns what it returns, from 0 to 99.
    [[nodiscard]] int run(const std::function<int()>& f) const;

private:
    [[nodiscard]] bool setFlag(bool isOn) const;
    [[nodiscard]] std::filesystem::path obstructed() const;

    std::filesystem::path m_page;
    Kind m_kind;
    bool m_isThere = true;
};

} // namespace luma::test
