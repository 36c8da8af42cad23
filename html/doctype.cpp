// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/doctype.h"

namespace luma::html {

Doctype::Doctype(std::string name, std::string publicId, std::string systemId, std::string declaration)
    : Node(Kind::Doctype),
      m_name(std::move(name)),
      m_publicId(std::move(publicId)),
      m_systemId(std::move(systemId)),
      m_declaration(std::move(declaration))
{}

NodePtr Doctype::shallowCopy() const
{
    return std::make_unique<Doctype>(m_name, m_publicId, m_systemId, m_declaration);
}

} // namespace luma::html
