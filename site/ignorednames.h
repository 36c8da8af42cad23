// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The files and folders that publishing leaves alone on both sides: those of version control, editors'
/// backups, the desktop's and our own temporary files, and what the site's own patterns name.
///
/// A pattern is matched as by glob(7) against a name at any depth, or, when it has a slash other than a last
/// one, against the path below the site's folder. A last slash restricts it to folders. What is in an ignored
/// folder is ignored with it. Immutable; any thread.
class IgnoredNames final
{
public:
    /// `patterns` are added to the ones that always count: bytes, one a line; empty lines do not count.
    explicit IgnoredNames(std::string_view patterns = {});

    /// A pattern that matches the file of this path, and beside it at most such whose names differ in control
    /// characters. None if the path is not UTF-8.
    static std::optional<std::string> patternOf(const std::string& path);

    /// `folder` is the relative path of the folder that has an item of this name; empty for the site's own.
    [[nodiscard]] bool match(const std::string& folder, const char* name, bool isFolder) const;

    /// The rules as rsync's options, one word each (rsync(1), FILTER RULES).
    [[nodiscard]] std::vector<std::string> rsyncOptions() const;

private:
    struct Pattern
    {
        std::string text; // without the slashes at both ends
        bool isLiteral = true;
        bool isAnchored = false; // matched against the path
        bool foldersOnly = false;
    };

    std::vector<Pattern> m_patterns;

    void add(std::string_view line);
};

} // namespace luma
