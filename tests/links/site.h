// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTemporaryDir>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace luma::test {

/// Texts by subpath.
using Files = std::map<std::string, std::string>;

/// A site in a temporary folder.
class Site final
{
public:
    Site() = default;
    explicit Site(const Files& files);

    [[nodiscard]] std::filesystem::path root() const;
    [[nodiscard]] std::filesystem::path at(std::string_view subpath) const { return root() / subpath; }
    void put(std::string_view subpath, std::string_view bytes) const;
    /// The file's bytes, or a text that says why there are none.
    [[nodiscard]] std::string bytesOf(std::string_view subpath) const;
    /// Every file by subpath.
    [[nodiscard]] std::map<std::string, std::string> contents() const { return contentsOf(root()); }

    static std::map<std::string, std::string> contentsOf(const std::filesystem::path& root);

private:
    QTemporaryDir m_folder;
};

/// A documentation package of the reference system, which a test may read as a real site.
struct RealSite
{
    std::string package;
    std::filesystem::path folder;
    std::string part; // a folder of it that makes a site of its own, for work that grows with the square

    /// The part, or all of it where the environment asks for that (LUMA_REAL_SITES is set); empty where the
    /// package is not installed.
    [[nodiscard]] std::filesystem::path usual() const;
    [[nodiscard]] bool isInstalled() const;
};

const std::vector<RealSite>& realSites();

} // namespace luma::test
