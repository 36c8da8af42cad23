// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTest>

#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace luma::test {

/// File contents by subpath.
using Files = std::map<std::string, std::string>;

/// A site in a temporary folder, which is removed with the object.
/// Names and contents are bytes; subpaths are relative to the site's folder and don't start with a slash.
class Site
{
public:
    explicit Site(const Files& files = {});
    Site(const Site&) = delete;
    Site& operator=(const Site&) = delete;
    ~Site();

    [[nodiscard]] const std::filesystem::path& root() const { return m_root; }
    [[nodiscard]] std::filesystem::path at(std::string_view subpath) const { return m_root / subpath; }

    /// Writes a file and creates the folders above it.
    void put(std::string_view subpath, std::string_view bytes = "text") const;
    void makeFolder(std::string_view subpath) const { std::filesystem::create_directories(at(subpath)); }
    /// Sets a file's modification time to `seconds` before a fixed moment, so that tests can compare ages.
    void setAge(std::string_view subpath, double seconds) const;

    /// The file's bytes; "unreadable: SUBPATH" for anything but a readable regular file.
    [[nodiscard]] std::string bytesOf(std::string_view subpath) const;
    /// All regular files below `folder`.
    [[nodiscard]] Files contents(std::string_view folder = "") const;
    /// The subpaths of all files and links below `folder`, one a line, sorted; empty folders end in "/".
    [[nodiscard]] std::string listing(std::string_view folder = "") const;

private:
    std::filesystem::path m_root;
};

} // namespace luma::test

/// Lets QCOMPARE show both texts when they differ.
template <>
inline char* QTest::toString(const std::string& text)
{
    return ::strdup(text.c_str());
}
