// SPDX-License-Identifier: GPL-3.0-or-later
#include "bench/measuring.h"
#include "html/characterdata.h"
#include "html/element.h"
#include "html/parse.h"
#include "html/prettyprinter.h"

#include <gumbo.h>

#include <cstdio>
#include <string>
#include <vector>

// Times the page editor's work on a page of 1 MB and 20,000 elements, as multiples of the bare parser's time
// for the same page (parsing and freeing its tree). Each figure is the median of many rounds. The measured
// steps alternate, so that other load slows all of them alike.

namespace {

using namespace luma::html;
using namespace luma::bench;

/// Reads everything that the outline shows of a row.
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

} // namespace

int main()
{
    const std::string page = samplePage(5000);
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
