#pragma once

#include <QTemporaryDir>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

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

/// The folders of real sites on this machine that the tests may read: documentation packages of the reference
/// system. Empty where they are not installed.
std::map<std::string, std::filesystem::path> realSites();

} // namespace luma::test
