// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/node.h"

namespace luma::html {

/// The document type declaration. Besides its parts it keeps the declaration as it was written, and is
/// serialised so: the parts don't tell whether an identifier was absent or empty, and browsers choose their
/// mode by that.
class Doctype final : public Node
{
public:
    Doctype(std::string name, std::string publicId, std::string systemId, std::string declaration);

    const std::string& name() const { return m_name; }
    const std::string& publicId() const { return m_publicId; }
    const std::string& systemId() const { return m_systemId; }
    const std::string& declaration() const { return m_declaration; }

    NodePtr shallowCopy() const override;

private:
    std::string m_name;
    std::string m_publicId;
    std::string m_systemId;
    std::string m_declaration;
};

} // namespace luma::html
