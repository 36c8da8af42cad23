// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

#include <string>
#include <utility>

namespace luma::html {

/// The document type declaration. Keeps the source text of the declaration as well as its parts and is
/// serialised from it: browsers choose their mode by whether an identifier is absent or empty, and the parts
/// do not tell.
class Doctype final : public Node
{
public:
    Doctype(std::string name, std::string publicId, std::string systemId, std::string declaration)
        : Node(Kind::Doctype),
          m_name(std::move(name)),
          m_publicId(std::move(publicId)),
          m_systemId(std::move(systemId)),
          m_declaration(std::move(declaration))
    {}

    const std::string& name() const { return m_name; }
    const std::string& publicId() const { return m_publicId; }
    const std::string& systemId() const { return m_systemId; }
    const std::string& declaration() const { return m_declaration; }

    NodePtr shallowCopy() const
    {
        return std::make_unique<Doctype>(m_name, m_publicId, m_systemId, m_declaration);
    }

private:
    std::string m_name;
    std::string m_publicId;
    std::string m_systemId;
    std::string m_declaration;
};

} // namespace luma::html
