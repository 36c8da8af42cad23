// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/textcomparison.h"

#include "base/files.h"
#include "base/usertext.h"
#include "shell/commandrunner.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        lines.emplace_back(line);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

// A run of lines: "=LINES 0", or "!LINES LINES" with the counts of either side.
struct Run
{
    bool isEqual = false;
    std::size_t left = 0;
    std::size_t right = 0;
};

std::optional<Run> readRun(std::string_view line)
{
    const std::size_t blank = line.find(' ');
    if (line.empty() || blank == std::string_view::npos)
        return {};
    Run run{.isEqual = line.front() == '='};
    const auto read = [](std::string_view digits, std::size_t& number) {
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        return error == std::errc() && end == digits.data() + digits.size();
    };
    if (!read(line.substr(1, blank - 1), run.left) || !read(line.substr(blank + 1), run.right))
        return {};
    if (run.isEqual)
        run.right = run.left;
    return run;
}

Result<std::string> runsOf(std::string_view left, std::string_view right, const StillWanted& stillWanted)
{
    const QTemporaryDir folder;
    if (!folder.isValid())
        return Error{folder.errorString().toStdString()};
    const fs::path place = QFile::encodeName(folder.path()).toStdString();
    for (const auto& [name, text] : {std::pair("left", left), std::pair("right", right)}) {
        if (auto written = writeFile(place / name, text); !written)
            return written.error();
    }
    ProgramResult result =
        runProgram({"diff", "--text", "--strip-trailing-cr", "--unchanged-group-format==%dn 0%c'\\012'",
                    "--old-group-format=!%dn 0%c'\\012'", "--new-group-format=!0 %dN%c'\\012'",
                    "--changed-group-format=!%dn %dN%c'\\012'", place / "left", place / "right"},
                   {}, stillWanted);
    // 1 means that they differ.
    if (!result.status || *result.status > 1)
        return Error{result.errors.empty() ? userText(QT_TRANSLATE_NOOP("luma::Engines", "diff can't be run"))
                                           : result.errors};
    return std::move(result.output);
}

} // namespace

Result<std::vector<ComparedLine>> comparedLines(std::string_view left, std::string_view right,
                                                const StillWanted& stillWanted)
{
    const auto runs = runsOf(left, right, stillWanted);
    if (!runs)
        return runs.error();
    std::vector<std::string> lefts = linesOf(left);
    std::vector<std::string> rights = linesOf(right);
    std::vector<ComparedLine> lines;
    std::size_t fromLeft = 0;
    std::size_t fromRight = 0;
    for (const std::string& text : linesOf(*runs)) {
        const auto run = readRun(text);
        if (!run || run->left > lefts.size() - fromLeft || run->right > rights.size() - fromRight)
            return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "diff printed what can't be read"))};
        for (std::size_t i = 0; i < std::max(run->left, run->right); ++i) {
            ComparedLine line{
                .isEqual = run->isEqual, .isOnLeft = i < run->left, .isOnRight = i < run->right};
            if (line.isOnLeft)
                line.left = std::move(lefts[fromLeft + i]);
            if (line.isOnRight)
                line.right = std::move(rights[fromRight + i]);
            lines.push_back(std::move(line));
        }
        fromLeft += run->left;
        fromRight += run->right;
    }
    return lines;
}

} // namespace luma
