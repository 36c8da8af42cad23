// SPDX-License-Identifier: GPL-3.0-or-later
#include "bench/measuring.h"
#include "html/pagecodec.h"
#include "html/parse.h"
#include "tests/html/randomedit.h"

#include <gumbo.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

// What saving keeps and what it costs. The table: the pages below each folder that the arguments name, what opening and
// saving changes, what a typed letter changes beyond itself, and how random edits of all kinds are written. Then the times
// of a page of 1 MB, as multiples of the bare parser's, and the memory of its tree.

namespace {

using namespace luma;
using namespace luma::html;
using namespace luma::bench;
namespace fs = std::filesystem;

constexpr std::size_t mostPages = 120; // of a folder

std::vector<std::string> pagesBelow(const fs::path& folder)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string extension = entry.path().extension();
        if (entry.is_regular_file() && (extension == ".html" || extension == ".htm" || extension == ".php"))
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<std::string> pages;
    const std::size_t count = std::min(files.size(), mostPages);
    for (std::size_t i = 0; i < count; ++i) {
        std::ifstream stream(files[i * files.size() / count], std::ios::binary);
        pages.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    return pages;
}

/// The bytes in which two texts differ, between their common ends.
std::size_t changedBytes(const std::string& before, const std::string& after)
{
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t same = 0;
    while (same < shorter && before[same] == after[same])
        ++same;
    std::size_t rest = 0;
    while (rest < shorter - same && before[before.size() - 1 - rest] == after[after.size() - 1 - rest])
        ++rest;
    return std::max(before.size(), after.size()) - same - rest;
}

struct Row
{
    int pages = 0;
    int refused = 0;
    std::size_t changedBySaving = 0;
    int letters = 0;
    std::size_t changedByLetters = 0;
    int edits = 0;
    int withoutMarkup = 0; // trees that no markup gives
    int wrongUndos = 0;
    std::map<WritingWay, int> ways;
    std::size_t printed = 0; // bytes, where an element or the page was printed
};

void tryPage(const std::string& bytes, test::RandomEdits& edits, Row& row)
{
    ++row.pages;
    PageCodec codec;
    const auto document = codec.read(bytes, MarkupLanguage::Html);
    const auto untouched = document ? codec.write(**document, MarkupLanguage::Html) : document.error();
    if (!untouched) {
        ++row.refused;
        return;
    }
    row.changedBySaving += changedBytes(bytes, untouched->bytes);
    for (int kind = 0; kind < test::RandomEdits::kinds; ++kind) {
        const auto edit = edits.make(**document, kind);
        if (!edit)
            continue;
        const auto written = codec.write(**document, MarkupLanguage::Html);
        edit->undo();
        const auto back = codec.write(**document, MarkupLanguage::Html);
        row.wrongUndos += back && back->bytes == bytes ? 0 : 1;
        if (!written || !written->parsed) {
            ++row.withoutMarkup;
            continue;
        }
        ++row.edits;
        ++row.ways[written->way];
        const std::size_t changed = changedBytes(bytes, written->bytes);
        if (written->way >= WritingWay::ElementPrinted)
            row.printed += changed;
        if (kind == 0) {
            ++row.letters;
            row.changedByLetters += changed;
        }
    }
}

void printTable(const std::vector<std::string>& folders)
{
    std::printf("%-44s %6s %8s %8s %7s %9s %6s %8s %8s %9s %6s %11s %9s\n", "folder", "pages", "refused",
                "by save", "letters", "by letter", "edits", "patched", "+tags", "element", "page",
                "bytes print", "bad undo");
    for (const std::string& folder : folders) {
        Row row;
        test::RandomEdits edits(7);
        for (const std::string& page : pagesBelow(folder))
            tryPage(page, edits, row);
        std::printf("%-44s %6d %8d %8zu %7d %9.2f %6d %8d %8d %9d %6d %11zu %9d\n", folder.c_str(), row.pages,
                    row.refused, row.changedBySaving, row.letters,
                    row.letters > 0 ? static_cast<double>(row.changedByLetters) / row.letters : 0.0,
                    row.edits, row.ways[WritingWay::Patched] + row.ways[WritingWay::Unchanged],
                    row.ways[WritingWay::TagsWritten] + row.ways[WritingWay::TagsSpelledOut],
                    row.ways[WritingWay::ElementPrinted], row.ways[WritingWay::PagePrinted], row.printed,
                    row.wrongUndos);
    }
}

double megabytesInUse()
{
    return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd) / 1e6;
}

void printTimes()
{
    const std::string page = samplePage(5000);
    std::vector<double> bare;
    std::vector<double> plain;
    std::vector<double> read;
    std::vector<double> untouched;
    std::vector<double> edited;
    for (int round = 0; round < 15; ++round) {
        Stopwatch watch;
        GumboOptions options = kGumboDefaultOptions;
        options.max_errors = 0;
        gumbo_destroy_output(&options, gumbo_parse_with_options(&options, page.data(), page.size()));
        bare.push_back(watch.milliseconds());
        watch = Stopwatch();
        const auto withoutSource = parse(page);
        plain.push_back(watch.milliseconds());
        PageCodec codec;
        watch = Stopwatch();
        const auto document = codec.read(page, MarkupLanguage::Html);
        read.push_back(watch.milliseconds());
        watch = Stopwatch();
        (void)codec.write(**document, MarkupLanguage::Html);
        untouched.push_back(watch.milliseconds());
        test::RandomEdits edits(static_cast<std::uint32_t>(round));
        (void)edits.make(**document, 0);
        watch = Stopwatch();
        (void)codec.write(**document, MarkupLanguage::Html);
        edited.push_back(watch.milliseconds());
    }
    const double unit = middle(bare);
    std::printf("\n%zu bytes; the bare parser: %.1f ms\n", page.size(), unit);
    std::printf(
        "tree %.2f, tree with source %.2f, saved untouched %.2f, saved after a letter %.2f (times that)\n",
        middle(plain) / unit, middle(read) / unit, middle(untouched) / unit, middle(edited) / unit);
    const double before = megabytesInUse();
    const auto tree = parse(page);
    const double withTree = megabytesInUse();
    const auto sourced = parseWithSource(page);
    std::printf("memory: tree %.1f MB, tree with source %.1f MB\n", withTree - before,
                megabytesInUse() - withTree);
}

} // namespace

int main(int count, char** arguments)
{
    printTable({arguments + 1, arguments + count});
    printTimes();
}
