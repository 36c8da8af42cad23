// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/element.h"
#include "html/pagewriter.h"
#include "html/parse.h"
#include "html/prettyprinter.h"

#include <cstdint>
#include <cstdlib>

// Reads the fuzzer's input, writes it, and reads it again. Some trees have no markup, so the second tree may
// differ from the first; but every tree must be writable as valid UTF-8 and must copy faithfully.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace luma::html;
    const std::string_view source(reinterpret_cast<const char*>(data), size);
    const auto document = parse(source);
    if (!document)
        return 0;
    if (!sameTree(*(*document)->copy(), **document))
        std::abort();
    // A page is written as UTF-8, which can be read again unless it has grown beyond a limit.
    for (const std::string& written : {(*document)->outerHtml(), prettyPrint(**document)}) {
        const auto again = parse(written);
        if (!again && again.error().text.find("UTF-8") != std::string::npos)
            std::abort();
    }
    for (Element* element : (*document)->select("*"))
        (void)element->cssSelector();
    // What is not edited keeps its bytes.
    if (const auto page = parseWithSource(source)) {
        const auto written = writePage(**page);
        if (!written || written->text != source)
            std::abort();
    }
    if (Element* body = (*document)->body())
        (void)body->setHtml(source);
    return 0;
}
