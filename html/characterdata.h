// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <string_view>

namespace luma::html {

/// A run of text, or a comment (its text without the delimiters). UTF-8 with character references resolved.
class CharacterData final : public Node
{
public:
    static std::unique_ptr<CharacterData> text(std::string_view text);
    static std::unique_ptr<CharacterData> comment(std::string_view text);

    const std::string& data() const { return m_data; }
    void setData(std::string data) { m_data = std::move(data); }
    void append(std::string_view data) { m_data += data; }

    NodePtr shallowCopy() const;

private:
    CharacterData(Kind kind, std::string_view data) : Node(kind), m_data(data) {}

    std::string m_data;
};

/// The text of a text node, or null for any other node.
const std::string* textOf(const Node& node);

/// Text nodes that touch are one text: this one's and those of the nodes behind it, up to `behind` or to one that is no text.
std::string joinedText(const Node& first, const Node* behind = nullptr);

} // namespace luma::html
