// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/classedits.h"

#include "base/ascii.h"
#include "html/element.h"

namespace luma {

namespace {

using Attributes = std::vector<html::Attribute>;

std::string valueOf(const Attributes& attributes, std::string_view name)
{
    for (const html::Attribute& attribute : attributes) {
        if (attribute.name == name)
            return attribute.value;
    }
    return {};
}

Attributes changed(Attributes attributes, std::string_view name, std::string value)
{
    for (html::Attribute& attribute : attributes) {
        if (attribute.name == name) {
            attribute.value = std::move(value);
            return attributes;
        }
    }
    attributes.push_back({std::string(name), std::move(value)});
    return attributes;
}

Attributes without(Attributes attributes, std::string_view name)
{
    std::erase_if(attributes, [name](const html::Attribute& attribute) { return attribute.name == name; });
    return attributes;
}

} // namespace

Attributes withClass(Attributes attributes, std::string_view name)
{
    std::string value = valueOf(attributes, "class");
    value.append(value.empty() ? "" : " ").append(name);
    return changed(std::move(attributes), "class", std::move(value));
}

Attributes withoutClass(Attributes attributes, std::string_view name)
{
    std::string value = valueOf(attributes, "class");
    if (value.empty() || name.empty())
        return attributes;
    std::string left;
    std::size_t from = 0;
    for (std::size_t at = value.find(name); at != std::string::npos; at = value.find(name, from)) {
        left += value.substr(from, at - from);
        from = at + name.size();
    }
    left = trimmed(left + value.substr(from));
    return left.empty() ? without(std::move(attributes), "class")
                        : changed(std::move(attributes), "class", std::move(left));
}

Attributes withID(Attributes attributes, std::string_view name)
{
    return changed(std::move(attributes), "id", std::string(name));
}

Attributes withoutID(Attributes attributes)
{
    return without(std::move(attributes), "id");
}

} // namespace luma
