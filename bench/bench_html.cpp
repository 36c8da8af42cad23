#include "html/characterdata.h"
#include "html/element.h"
#include "html/parse.h"
#include "html/prettyprinter.h"

#include <gumbo.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

// The page editor's work on a page of 1 MB and 20,000 elements, as multiples of the bare parser's time for
// the same page (parsing and giving back its tree). Each figure is the middle one of many rounds; the rounds
// take turns, so that a busy machine slows all alike.

namespace {

using namespace luma::html;

std::string makePage()
{
    std::string page =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>Page</title>\n"
        "</head>\n<body>\n";
    for (int i = 0; i < 5000; ++i) {
        page += "<section class=\"entry odd\" id=\"entry" + std::to_string(i) +
                "\">\n<h2>Entry &amp; heading</h2>\n<p>Some text of the entry, long enough to look like one "
                "that was "
                "written, with a <a href=\"../pages/page" +
                std::to_string(i) + ".html\">link to another</a> in it.</p>\n</section>\n";
    }
    return page + "</body>\n</html>\n";
}

/// What the outline asks of every row.
std::size_t readRows(const Document& document)
{
    std::size_t seen = 0;
    std::vector<const ParentNode*> parents = {&document};
    while (!parents.empty()) {
        const ParentNode* parent = parents.back();
        parents.pop_back();
        for (const Element* child : parent->children()) {
            seen += child->tagName().size() + child->ownText().size();
            for (const Attribute& attribute : child->attributes())
                seen += attribute.name.size() + attribute.value.size();
            parents.push_back(child);
        }
    }
    return seen;
}

class Stopwatch
{
public:
    double milliseconds() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

double middle(std::vector<double> times)
{
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                     times.end());
    return times[times.size() / 2];
}

} // namespace

int main()
{
    const std::string page = makePage();
    std::vector<double> bare;
    std::vector<double> parsed;
    std::vector<double> withRows;
    std::vector<double> edited;
    std::vector<double> printed;
    std::size_t checksum = 0;
    std::size_t elements = 0;
    for (int round = 0; round < 31; ++round) {
        {
            const Stopwatch watch;
            GumboOptions options = kGumboDefaultOptions;
            options.max_errors = 0;
            gumbo_destroy_output(&options, gumbo_parse_with_options(&options, page.data(), page.size()));
            bare.push_back(watch.milliseconds());
        }
        const Stopwatch watch;
        auto result = parse(page);
        if (!result)
            return 1;
        Document& document = **result;
        parsed.push_back(watch.milliseconds());
        checksum += readRows(document);
        withRows.push_back(watch.milliseconds());
        elements = document.select("*").size();

        const Stopwatch editWatch;
        document.body()->insertChildren(0, std::make_unique<Element>("section"));
        checksum += prettyPrint(document).size();
        printed.push_back(editWatch.milliseconds());
        const Stopwatch exactWatch;
        document.body()->firstElement()->remove();
        checksum += document.outerHtml().size();
        edited.push_back(exactWatch.milliseconds());
    }
    const double unit = middle(bare);
    std::printf("%zu bytes, %zu elements (%zu)\n", page.size(), elements, checksum);
    std::printf("bare parser                     %6.1f ms  1.00\n", unit);
    const auto line = [unit](const char* name, const std::vector<double>& times) {
        std::printf("%-31s %6.1f ms  %.2f\n", name, middle(times), middle(times) / unit);
    };
    line("parse", parsed);
    line("parse and read every row", withRows);
    line("one edit and serialise", edited);
    line("one edit and pretty print", printed);
    return 0;
}
