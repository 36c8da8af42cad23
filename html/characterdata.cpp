// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterdata.h"

namespace luma::html {

std::unique_ptr<CharacterData> CharacterData::text(std::string_view text)
{
    return std::unique_ptr<CharacterData>(new CharacterData(Kind::Text, text));
}

std::unique_ptr<CharacterData> CharacterData::comment(std::string_view text)
{
    return std::unique_ptr<CharacterData>(new CharacterData(Kind::Comment, text));
}

NodePtr CharacterData::shallowCopy() const
{
    return NodePtr(new CharacterData(kind(), m_data));
}

const std::string* textOf(const Node& node)
{
    return node.kind() == Node::Kind::Text ? &static_cast<const CharacterData&>(node).data() : nullptr;
}

std::string joinedText(const Node& first, const Node* behind)
{
    std::string text;
    for (const Node* node = &first; node && node != behind && textOf(*node); node = node->next())
        text += *textOf(*node);
    return text;
}

} // namespace luma::html
