// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A command's arguments taken apart: options anywhere before "--", the rest in order.
class CommandArguments final
{
public:
    /// `flags` stand alone, `options` take the next argument as their value or have it after "=".
    CommandArguments(const std::vector<std::string>& arguments, const std::vector<std::string_view>& flags,
                     const std::vector<std::string_view>& options);

    /// Why the arguments are unusable; empty when they are not.
    [[nodiscard]] const std::string& error() const { return m_error; }
    [[nodiscard]] const std::vector<std::string>& operands() const { return m_operands; }
    [[nodiscard]] bool has(std::string_view name) const;
    [[nodiscard]] std::string value(std::string_view name) const;
    /// Every value given for an option, in order.
    [[nodiscard]] std::vector<std::string> values(std::string_view name) const;

private:
    struct Given
    {
        std::string name;
        std::string value;
    };

    std::vector<Given> m_given;
    std::vector<std::string> m_operands;
    std::string m_error;
};

/// `path` as an absolute path without "." and "..", symbolic links as they are.
std::filesystem::path absolutePath(const std::filesystem::path& path);

/// The site's folder as an absolute path; nothing, with a complaint, when it is no folder or can't be listed.
std::optional<std::filesystem::path> siteFolder(const std::string& argument);

/// What an argument names in a site: a subpath of it, or any path. As a subpath where something stands there.
std::filesystem::path itemPath(const std::filesystem::path& site, const std::string& argument);

} // namespace luma
