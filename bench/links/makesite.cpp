// SPDX-License-Identifier: GPL-3.0-or-later
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// Writes a site with known contents: the same arguments give the same bytes.
//
//     makesite FOLDER PAGES [LINKS-A-PAGE [BYTES-A-PAGE]]
//
// Each folder holds a hundred pages, a style sheet, an image and a script. Every page links to its neighbours in
// the same folder and in others; every tenth has one broken link. Every hundredth page and one image in each
// folder are unlinked. One percent of the pages link to shared/target.html. Prints the numbers of pages, links,
// missing links and unlinked files.

namespace fs = std::filesystem;

namespace {

struct Plan
{
    fs::path folder;
    std::size_t pages = 1000;
    std::size_t links = 60;
    std::size_t bytes = 8192;
};

struct Counts
{
    std::size_t missing = 0;
    std::size_t unlinked = 0;
    std::size_t links = 0;
};

std::string folderName(std::size_t page)
{
    return "part" + std::to_string(page / 100);
}

std::string pageName(std::size_t page)
{
    return "page" + std::to_string(page) + ".html";
}

// Spreads the links over all pages except the unlinked ones; 7 and 99 have no common divisor.
std::size_t linkedPage(const Plan& plan, std::size_t page, std::size_t link)
{
    const std::size_t other = (page + 1 + link * 7) % plan.pages;
    return other % 100 == 99 ? (other + 1) % plan.pages : other;
}

void put(const fs::path& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string pageText(const Plan& plan, std::size_t page, Counts& counts)
{
    std::string text = "<!DOCTYPE html>\n<html><head><title>Page " + std::to_string(page) +
                       "</title>\n<link rel=\"stylesheet\" href=\"style.css\">\n</head>\n<body>\n"
                       "<!-- <a href=\"not-a-link.html\"> -->\n<img src=\"linked.png\" alt=\"\">\n";
    const auto link = [&](const std::string& value) {
        text += R"(<p class="entry">See <a class="link" href=")" + value + "\">this &amp; that</a>.</p>\n";
        ++counts.links;
    };
    counts.links += 2;
    for (std::size_t i = 3; i < plan.links; ++i) {
        const std::size_t other = linkedPage(plan, page, i);
        link(other / 100 == page / 100 ? pageName(other) : "../" + folderName(other) + "/" + pageName(other));
    }
    link(page % 100 == 50 ? "../shared/target.html" : "../index.html");
    if (page % 10 == 3) {
        link("gone" + std::to_string(page) + ".html");
        ++counts.missing;
    }
    while (text.size() + 60 < plan.bytes)
        text += "<p>Words, and more of them, with nothing to follow.</p>\n";
    return text + "</body></html>\n";
}

void putFolder(const Plan& plan, std::size_t page, Counts& counts)
{
    const fs::path folder = plan.folder / folderName(page);
    fs::create_directories(folder);
    put(folder / "style.css", "body { background: url( back.png ) }\n");
    put(folder / "code.js", "load('data" + std::to_string(page) + ".bin');\n");
    put(folder / ("data" + std::to_string(page) + ".bin"), "data");
    put(folder / "linked.png", "image");
    put(folder / "back.png", "image");
    put(folder / "lonely.gif", "image");
    counts.unlinked += 2; // the script and the lonely image
}

std::size_t numberOf(const char* text)
{
    std::size_t number = 0;
    const std::string digits(text);
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        (void)std::fputs("Usage: makesite FOLDER PAGES [LINKS-A-PAGE [BYTES-A-PAGE]]\n", stderr);
        return 2;
    }
    Plan plan;
    plan.folder = argv[1];
    plan.pages = numberOf(argv[2]);
    plan.links = argc > 3 ? numberOf(argv[3]) : plan.links;
    plan.bytes = argc > 4 ? numberOf(argv[4]) : plan.bytes;
    Counts counts;
    for (std::size_t page = 0; page < plan.pages; ++page) {
        if (page % 100 == 0)
            putFolder(plan, page, counts);
        counts.unlinked += page % 100 == 99 ? 1 : 0;
        put(plan.folder / folderName(page) / pageName(page), pageText(plan, page, counts));
    }
    fs::create_directories(plan.folder / "shared");
    put(plan.folder / "shared/target.html", "<a href=\"../index.html\">");
    put(plan.folder / "index.html", "<a href=\"part0/page0.html\">");
    counts.links += 2;
    std::printf("%zu pages, %zu links, %zu missing, %zu unlinked\n", plan.pages + 2, counts.links,
                counts.missing, counts.unlinked);
    return 0;
}
