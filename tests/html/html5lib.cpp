// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/html/html5lib.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/doctype.h"
#include "html/element.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace luma::test {

namespace {

using namespace luma::html;

std::vector<fs::path> casesIn(const fs::path& folder)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().extension() == ".dat")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string nameSpacePrefix(const Element& element)
{
    switch (element.nameSpace()) {
    case NameSpace::Svg:
        return "svg ";
    case NameSpace::MathMl:
        return "math ";
    case NameSpace::Html:
        break;
    }
    return {};
}

/// html5lib writes a blank, not a colon, after a name space prefix that the standard adjusts.
std::string attributeName(const Element& element, const std::string& name)
{
    static const std::set<std::string> known = {"xlink:actuate", "xlink:arcrole", "xlink:href", "xlink:role",
                                                "xlink:show",    "xlink:title",   "xlink:type", "xml:lang",
                                                "xml:space",     "xmlns:xlink"};
    std::string result = name;
    if (element.nameSpace() != NameSpace::Html && known.contains(name))
        result[name.find(':')] = ' ';
    return result;
}

std::string line(std::size_t depth, const std::string& text)
{
    return "| " + std::string(depth * 2, ' ') + text + "\n";
}

std::string describe(const Node& node, std::size_t depth)
{
    switch (node.kind()) {
    case Node::Kind::Doctype: {
        const auto& doctype = static_cast<const Doctype&>(node);
        std::string ids;
        if (!doctype.publicId().empty() || !doctype.systemId().empty())
            ids = " \"" + doctype.publicId() + "\" \"" + doctype.systemId() + "\"";
        return line(depth, "<!DOCTYPE " + doctype.name() + ids + ">");
    }
    case Node::Kind::Comment:
        return line(depth, "<!-- " + static_cast<const CharacterData&>(node).data() + " -->");
    case Node::Kind::Text:
        return line(depth, "\"" + static_cast<const CharacterData&>(node).data() + "\"");
    case Node::Kind::Document:
        return {};
    case Node::Kind::Element:
        break;
    }
    const Element& element = *node.asElement();
    std::string lines = line(depth, "<" + nameSpacePrefix(element) + element.tagName() + ">");
    std::map<std::string, std::string> sorted;
    for (const Attribute& attribute : element.attributes())
        sorted.emplace(attributeName(element, attribute.name), attribute.value);
    for (const auto& [name, value] : sorted)
        lines += line(depth + 1, name + "=\"" + value + "\"");
    if (element.is("template"))
        lines += line(depth + 1, "content");
    return lines;
}

std::size_t depthBelow(const Node& node, const Node& top)
{
    std::size_t depth = 0;
    for (const Node* above = node.parent(); above && above != &top; above = above->parent()) {
        const Element* element = above->asElement();
        depth += element && element->is("template") ? 2 : 1;
    }
    return depth;
}

std::vector<TreeCase> treeCases(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::map<std::string, std::string> sections;
    std::vector<TreeCase> cases;
    std::string section;
    const auto finish = [&] {
        const auto trimmed = [&sections](const char* name) {
            std::string text = sections[name];
            while (text.ends_with('\n'))
                text.pop_back();
            return text;
        };
        std::string data = sections["#data"];
        if (data.ends_with('\n'))
            data.pop_back();
        cases.push_back({file.filename().string() + " " + std::to_string(cases.size()), data,
                         trimmed("#document-fragment"), sections.contains("#script-on"),
                         trimmed("#document") + "\n"});
        sections.clear();
    };
    for (std::string text; std::getline(stream, text);) {
        // A blank line may be part of a text node in the expected tree.
        if (text == "#data" && sections.contains("#document"))
            finish();
        static const std::set<std::string> names = {
            "#data",      "#errors",     "#new-errors", "#document-fragment",
            "#script-on", "#script-off", "#document"};
        if (names.contains(text) && !(section == "#document" && text != "#data")) {
            section = text;
            sections[section];
        } else {
            sections[section] += text + "\n";
        }
    }
    finish();
    return cases;
}

} // namespace

fs::path html5libFolder()
{
    if (const char* folder = std::getenv("HTML5LIB_TESTS"))
        return folder;
    const char* source = std::getenv("LUMA_SOURCE_DIR");
    for (fs::path above = source ? source : "."; above.has_relative_path(); above = above.parent_path()) {
        if (fs::exists(above / "shared/html5lib-tests"))
            return above / "shared/html5lib-tests";
    }
    return {};
}

std::vector<TreeCase> allTreeCases()
{
    std::vector<TreeCase> all;
    for (const fs::path& file : casesIn(html5libFolder() / "tree-construction")) {
        for (TreeCase& each : treeCases(file))
            all.push_back(std::move(each));
    }
    return all;
}

std::string dump(const ParentNode& top)
{
    std::string lines;
    for (const Node* node = top.firstChild(); node; node = node->following(top))
        lines += describe(*node, depthBelow(*node, top));
    return lines;
}

} // namespace luma::test
