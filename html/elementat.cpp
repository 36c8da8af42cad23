// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/elementat.h"

#include "base/utf8.h"
#include "html/pagesource.h"

#include <memory>
#include <string_view>

namespace luma::html {

namespace {

std::size_t placeIn(std::string_view text, std::uint32_t line, std::uint32_t column)
{
    std::size_t place = 0;
    for (std::uint32_t number = 1; number < line; ++number) {
        const std::size_t feed = text.find('\n', place);
        if (feed == std::string_view::npos)
            return text.size();
        place = feed + 1;
    }
    for (std::uint32_t number = 1; number < column && place < text.size(); ++number) {
        ++place;
        while (place < text.size() && isUtf8Continuation(text[place]))
            ++place;
    }
    return place;
}

} // namespace

Element* elementAt(Document& document, std::uint32_t line, std::uint32_t column)
{
    const PageSource* source = nullptr;
    std::size_t place = 0;
    for (Node* node = document.following(document); node; node = node->following(document)) {
        if (!node->origin().source)
            continue;
        if (!source) {
            source = node->origin().source;
            place = placeIn(source->text(), line, column);
        }
        const SourceRange& range = PageSource::recordOf(*node).start;
        if (node->origin().source != source || place < range.begin || place >= range.end)
            continue;
        if (Element* element = node->asElement())
            return element;
        return node->parent() ? node->parent()->asElement() : nullptr;
    }
    return nullptr;
}

} // namespace luma::html
