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

} // namespace luma::html
