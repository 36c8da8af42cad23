// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/reopenedformatting.h"

#include "html/document.h"
#include "html/element.h"
#include "html/omittedtags.h"
#include "html/pagesource.h"
#include "html/unchangednodes.h"

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

namespace luma::html {

namespace {

constexpr std::uint32_t noRecord = ~std::uint32_t(0);

/// What the parser opened again: by record number, the record before with the same content, and the one behind.
struct Repetitions
{
    explicit Repetitions(const PageSource& source)
        : before(source.size(), noRecord), behind(source.size(), noRecord)
    {
        std::unordered_map<std::uint32_t, std::uint32_t> last;
        for (std::uint32_t number = 1; number < source.size(); ++number) {
            const SourceRecord& record = source.record(number);
            const auto [found, isFirst] = last.try_emplace(record.content, number);
            if (!isFirst && record.start.isEmpty()) {
                before[number] = found->second;
                behind[found->second] = number;
            }
            found->second = number;
        }
    }

    std::vector<std::uint32_t> before;
    std::vector<std::uint32_t> behind;
};

// Whether the element, which has an origin, gets an end tag because of an edit in it or directly behind it.
bool isEndedByEdit(const Element& element)
{
    const auto& [source, number] = element.origin();
    const Node* const next = element.next();
    const std::uint32_t expected = source->record(number).after;
    const bool isFollowed = next ? next->origin().source == source && next->origin().record == expected
                                 : element.parent()->origin().source == source &&
                                       PageSource::recordOf(*element.parent()).after == expected;
    return UnchangedNodes::isEdited(element) || !isFollowed;
}

} // namespace

bool ReopenedFormatting::wantsStartTag(const Element& element) const
{
    return m_started.contains(&element);
}

bool ReopenedFormatting::wantsEndTag(const Element& element) const
{
    return m_ended.contains(&element);
}

void ReopenedFormatting::start(const Element& element)
{
    m_started.insert(&element);
    m_edited.insert(&element);
}

void ReopenedFormatting::end(const Element& element)
{
    if (!PageSource::recordOf(element).end.isEmpty())
        return;
    m_ended.insert(&element);
    m_edited.insert(&element);
}

// What an edit ends is not opened again behind it unless a start tag says so, and what the parser would open again where
// the edit is must have ended before.
ReopenedFormatting::ReopenedFormatting(const Document& document)
{
    const PageSource* const source = document.origin().source;
    const Repetitions repetitions(*source);
    std::unordered_map<std::uint32_t, const Element*> lasts; // by content
    for (const Node* node = &document; node; node = node->following(document)) {
        const Element* const element = node->asElement();
        if (!element || !isFormatting(*element) || element->origin().source != source)
            continue;
        const std::uint32_t number = element->origin().record;
        const SourceRecord& record = PageSource::recordOf(*element);
        const Element* const last = std::exchange(lasts[record.content], element);
        const std::uint32_t lastNumber = last ? last->origin().record : noRecord;
        const bool isRight = last && lastNumber == repetitions.before[number] && !m_ended.contains(last) &&
                             !isEndedByEdit(*last) && UnchangedNodes::hasSameContent(*element);
        if (last && repetitions.behind[lastNumber] != noRecord && !(isRight && record.start.isEmpty()))
            end(*last);
        if (record.start.isEmpty() && !isRight)
            start(*element);
        if (last && lastNumber >= number)
            end(*element);
    }
    for (const auto& [content, last] : lasts) {
        if (repetitions.behind[last->origin().record] != noRecord)
            end(*last);
    }
}

} // namespace luma::html
