// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filereader.h"
#include "links/linkrules.h"

#include <QRegularExpression>

#include <filesystem>
#include <string>
#include <string_view>

namespace luma {

/// Answers for one target which files of the site refer to it: a page by a link attribute or by url(...) in a
/// style element, a style sheet by url(...) with the file's name, a plain-text file by containing the name.
///
/// In url(...) the name is used as a regular expression, unescaped; an invalid one matches nothing. One
/// thread at a time.
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
    // These depend on the candidate's folder and are kept for the next one there.
    std::filesystem::path m_folder;
    std::string m_prefix; // folded
    QRegularExpression m_pageReference;
    FileReader m_reader;
};

} // namespace luma
