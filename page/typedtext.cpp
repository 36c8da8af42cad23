// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/typedtext.h"

#include "base/ascii.h"
#include "html/characterdata.h"

#include <algorithm>
#include <optional>
#include <string>

namespace luma {

namespace {

constexpr std::string_view noBreakSpace = "\xc2\xa0";

/// Adds what the user sees of the node; false when that is more than text.
bool addText(const html::Node& node, std::string& text)
{
    if (node.kind() == html::Node::Kind::Text) {
        text += static_cast<const html::CharacterData&>(node).data();
        return true;
    }
    return node.asElement() && node.asElement()->is("br");
}

std::optional<std::string> textBetween(const html::ParentNode& parent, const html::Node* previous,
                                       const html::Node* next)
{
    std::string text;
    for (const html::Node* node = previous ? previous->next() : parent.firstChild(); node != next;
         node = node->next()) {
        if (!addText(*node, text))
            return {};
    }
    return text;
}

std::optional<std::string> textOf(const html::NodeList& nodes)
{
    std::string text;
    const bool isText = std::all_of(nodes.begin(), nodes.end(),
                                    [&text](const html::NodePtr& node) { return addText(*node, text); });
    return isText ? std::optional(text) : std::nullopt;
}

void makeBlanksPlain(std::string& text)
{
    for (std::size_t at = text.find(noBreakSpace); at != std::string::npos;
         at = text.find(noBreakSpace, at + 1))
        text.replace(at, noBreakSpace.size(), " ");
}

// The blank in front of it belongs to a word, so that an undone word leaves none behind.
bool beginsWord(std::string_view text, std::size_t from, std::size_t to)
{
    for (std::size_t at = std::max<std::size_t>(from, 1); at < to; ++at) {
        if (isWhiteSpace(text[at]) && !isWhiteSpace(text[at - 1]))
            return true;
    }
    return false;
}

} // namespace

TypedText typedText(const MarkupDifference& difference)
{
    if (!difference.parent || !difference.attributes.empty())
        return TypedText::None;
    auto before = textBetween(*difference.parent, difference.previous, difference.next);
    auto after = textOf(difference.nodes);
    if (!before || !after)
        return TypedText::None;
    makeBlanksPlain(*before);
    makeBlanksPlain(*after);
    const auto same = std::mismatch(before->begin(), before->end(), after->begin(), after->end());
    const auto rest = std::mismatch(before->rbegin(), std::make_reverse_iterator(same.first), after->rbegin(),
                                    std::make_reverse_iterator(same.second));
    const bool removes = rest.first.base() != same.first;
    const bool adds = rest.second.base() != same.second;
    if (removes)
        return adds ? TypedText::BeginsWord : TypedText::Removes;
    const auto from = static_cast<std::size_t>(same.second - after->begin());
    const auto to = static_cast<std::size_t>(rest.second.base() - after->begin());
    return beginsWord(*after, from, to) ? TypedText::BeginsWord : TypedText::AddsToWord;
}

} // namespace luma
