// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/elementcopy.h"

#include "base/ascii.h"
#include "html/element.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

namespace {

using Names = std::set<std::string, std::less<>>;
using Renames = std::map<std::string, std::string, std::less<>>;

/// Attributes that hold ids (HTML standard and WAI-ARIA 1.2).
bool refersToIds(std::string_view attribute)
{
    constexpr auto names = std::to_array<std::string_view>(
        {"for", "form", "headers", "list", "aria-activedescendant", "aria-controls", "aria-describedby",
         "aria-details", "aria-errormessage", "aria-flowto", "aria-labelledby", "aria-owns"});
    return std::find(names.begin(), names.end(), attribute) != names.end();
}

template <class Do>
void forEachElement(html::Node& top, const Do& act)
{
    for (html::Node* node = &top; node; node = node->following(top)) {
        if (html::Element* const element = node->asElement())
            act(*element);
    }
}

/// "name-2", or "name-3" for "name-2". `numbers` are the ones to go on with, by the part before the number.
std::string freeName(std::string_view name, const Names& taken, std::map<std::string, int>& numbers)
{
    const std::size_t end = name.find_last_not_of("0123456789");
    const bool isNumbered = end != std::string_view::npos && end + 1 < name.size() && name[end] == '-';
    const std::string stem(isNumbered ? name.substr(0, end) : name);
    int& number = numbers.try_emplace(stem, 2).first->second;
    std::string free;
    do
        free = stem + "-" + std::to_string(number++);
    while (taken.contains(free));
    return free;
}

std::string renamed(std::string_view value, const Renames& renames)
{
    std::string result;
    for (const std::string_view word : words(value)) {
        const auto found = renames.find(word);
        result.append(result.empty() ? "" : " ").append(found == renames.end() ? word : found->second);
    }
    return result;
}

void changeReferences(html::Element& element, const Renames& renames)
{
    const std::vector<html::Attribute> attributes = element.attributes();
    for (const html::Attribute& attribute : attributes) {
        const std::string_view value = attribute.value;
        const auto fragment = value.starts_with('#') ? renames.find(value.substr(1)) : renames.end();
        if (fragment != renames.end())
            element.setAttr(attribute.name.text(), "#" + fragment->second);
        else if (refersToIds(attribute.name.text()))
            element.setAttr(attribute.name.text(), renamed(value, renames));
    }
}

} // namespace

html::NodePtr copyWithOwnIds(const html::Element& element)
{
    Names taken;
    const html::Node& page = element.root();
    for (const html::Node* node = &page; node; node = node->following(page)) {
        if (const html::Element* const each = node->asElement())
            taken.emplace(each->attr("id"));
    }
    html::NodePtr copied = element.copy();
    Renames renames;
    std::map<std::string, int> numbers;
    forEachElement(*copied, [&](html::Element& each) {
        const std::string id(each.attr("id"));
        if (id.empty())
            return;
        const std::string free = freeName(id, taken, numbers);
        taken.insert(free);
        renames.emplace(id, free);
        each.setAttr("id", free);
    });
    if (!renames.empty())
        forEachElement(*copied, [&renames](html::Element& each) { changeReferences(each, renames); });
    return copied;
}

} // namespace luma
