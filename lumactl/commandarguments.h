// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/siterecord.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A command's arguments, sorted into options and operands. Options may come anywhere before "--".
class CommandArguments final
{
public:
    /// `flags` have no value; `options` have one, as the next argument or after "=".
    CommandArguments(const std::vector<std::string>& arguments, const std::vector<std::string_view>& flags,
                     const std::vector<std::string_view>& options);

    /// Why the arguments are wrong; empty if they are not.
    [[nodiscard]] const std::string& error() const { return m_error; }
    [[nodiscard]] const std::vector<std::string>& operands() const { return m_operands; }
    [[nodiscard]] bool has(std::string_view name) const;
    /// The last value given for an option, or an empty text.
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

/// The site of the user's list that an argument names: null if the list has no such site, or if the argument is a folder.
/// Nothing, after a message, if the list can't be read or has two sites of that name.
std::optional<std::shared_ptr<SiteRecord>> savedSite(const std::string& argument);

/// The folder that an argument gives, or the source of the saved site it names, as an absolute path; nothing, after a
/// message, if it can't be listed. A move that was interrupted there is finished or taken back first, with a message.
std::optional<std::filesystem::path> siteFolder(const std::string& argument);

/// The item that an argument names: a subpath of the site if there is such an item, else any path.
std::filesystem::path itemPath(const std::filesystem::path& site, const std::string& argument);

} // namespace luma
