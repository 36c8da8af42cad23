// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "links/linkrules.h"

#include <QRegularExpression>

#include <filesystem>
#include <string>
#include <string_view>

namespace luma {

/// Answers for one target whether files of the site refer to it: a page by an attribute or by url(...) in a
/// style element, a style sheet by url(...) with the file's name, a plain text by holding the file's name.
///
/// What is used as part of a regular expression is used unescaped: a name may be a pattern, and one that is
/// no valid pattern matches nothing. Not for several threads at once.
class LinkedFile final
{
public:
    explicit LinkedFile(std::filesystem::path target);

    /// Whether the candidate refers to the target. A file that can't be read or is not UTF-8 does not.
    bool isLinkedFrom(const std::filesystem::path& candidate);

private:
    bool isLinkedFromPage(std::string_view source, const std::filesystem::path& folder);

    std::filesystem::path m_target;
    std::string m_name;
    QRegularExpression m_nameReference;
    std::filesystem::path m_folder; // of the candidate before
    std::string m_prefix;           // folded
    QRegularExpression m_pageReference;
    FileReader m_reader;
};

/// The same for a single pair.
bool isLinkedFromSite(const std::filesystem::path& target, const std::filesystem::path& candidate);

/// Matches, letter case ignored, url(...) around `name`, blanks inside the brackets; `name` is a pattern.
/// Invalid when `name` is none or not UTF-8.
QRegularExpression urlReference(std::string_view name);

/// Whether a valid `expression` matches in `text`.
bool matchesIn(const QRegularExpression& expression, std::string_view text);

/// Whether the letters "url(" stand in `text`, in any case.
bool mayHoldUrlReference(std::string_view text);

} // namespace luma
