// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/document.h"
#include "html/element.h"
#include "html/pagewriter.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace luma::test {

/// One edit of a tree and its way back.
struct Edit
{
    std::string name;
    std::function<void()> undo;
    const html::Node* around = nullptr; // the smallest node that the edit lies in
};

/// Makes random edits in a page's body, without the tag rules. The same seed gives the same edits.
class RandomEdits final
{
public:
    static constexpr int kinds = 9;

    explicit RandomEdits(std::uint32_t seed) : m_random(seed) {}

    /// Nothing where the page has no place for an edit of this kind.
    std::optional<Edit> make(html::Document& document, int kind);

private:
    template <class List>
    auto one(const List& list) -> const typename List::value_type&
    {
        return list[m_random() % list.size()];
    }

    std::optional<Edit> typeLetter();
    std::optional<Edit> setAttribute();
    std::optional<Edit> removeAttribute();
    std::optional<Edit> insertElement();
    std::optional<Edit> removeElement();
    std::optional<Edit> moveElement();
    std::optional<Edit> wrapNode();
    std::optional<Edit> pasteElement();
    std::optional<Edit> makeList();
    std::optional<Edit> withAttributes(const char* name, const std::function<bool(html::Element&)>& change);

    std::mt19937 m_random;
    std::vector<html::Element*> m_elements;
    std::vector<html::Node*> m_texts;
};

/// What the edited page must keep: every byte outside the smallest element around the edit whose bytes are its own. Empty
/// when it does, else what differs. Where tags were written that the page leaves out, pages with mis-nested formatting count as
/// right: both parts of an element need tags then.
std::string differenceOutside(const Edit& edit, const std::string& written, const std::string& source,
                              html::WritingWay way);

} // namespace luma::test
