// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/html/html5lib.h"

#include "base/ascii.h"
#include "html/characterdata.h"
#include "html/doctype.h"
#include "html/element.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

namespace luma::test {

namespace {

using namespace luma::html;

std::vector<fs::path> filesIn(const fs::path& folder, const char* extension)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().extension() == extension)
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

/// html5lib writes a name space prefix that the parser knew with a blank.
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

std::vector<Attribute> attributesOf(const QJsonValue& value)
{
    std::vector<Attribute> attributes;
    for (const QJsonValue& each : value.toArray())
        attributes.push_back(
            {each[u"name"].toString().toStdString(), each[u"value"].toString().toStdString()});
    return attributes;
}

/// As a browser writes one that a script has made.
NodePtr doctypeOf(const QJsonArray& token)
{
    const std::string name = token[1].toString().toStdString();
    const std::string publicId = token[2].toString().toStdString();
    const std::string systemId = token[3].toString().toStdString();
    std::string declaration = "<!DOCTYPE " + name;
    if (!publicId.empty())
        declaration += " PUBLIC \"" + publicId + '"';
    else if (!systemId.empty())
        declaration += " SYSTEM";
    if (!systemId.empty())
        declaration += " \"" + systemId + '"';
    return std::make_unique<Doctype>(name, publicId, systemId, declaration + '>');
}

std::unique_ptr<Document> treeOf(const QJsonArray& tokens)
{
    auto document = std::make_unique<Document>();
    ParentNode* parent = document.get();
    for (const QJsonValue& each : tokens) {
        const QJsonArray token = each.toArray();
        const QString kind = token[0].toString();
        const std::string text = token[1].toString().toStdString();
        if (kind == u"StartTag")
            parent = parent
                         ->append(std::make_unique<Element>(token[2].toString().toStdString(),
                                                            NameSpace::Html, attributesOf(token[3])))
                         .asParent();
        else if (kind == u"EmptyTag")
            parent->append(std::make_unique<Element>(text, NameSpace::Html, attributesOf(token[2])));
        else if (kind == u"EndTag")
            parent = parent->parent() ? parent->parent() : parent;
        else if (kind == u"Comment")
            parent->append(CharacterData::comment(text));
        else if (kind == u"Doctype")
            parent->append(doctypeOf(token));
        else
            parent->append(CharacterData::text(text));
    }
    return document;
}

} // namespace

std::vector<SerializerCase> allSerializerCases()
{
    std::vector<SerializerCase> cases;
    for (const fs::path& path : filesIn(html5libFolder() / "serializer", ".test")) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QJsonArray tests = QJsonDocument::fromJson(file.readAll())[u"tests"].toArray();
        for (const QJsonValue& test : tests) {
            SerializerCase& added = cases.emplace_back();
            added.place = path.filename().string() + " " + test[u"description"].toString().toStdString();
            added.options = test[u"options"].toObject().keys().join(u' ').toStdString();
            if (test[u"input"].toArray().first().toArray().first() == QStringLiteral("EndTag"))
                added.options = "stray end tag";
            added.tree = treeOf(test[u"input"].toArray());
            for (const QJsonValue& text : test[u"expected"].toArray())
                added.expected.push_back(text.toString().toStdString());
        }
    }
    return cases;
}

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
        // A blank line may belong to a text node of the expected tree.
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

std::vector<TreeCase> allTreeCases()
{
    std::vector<TreeCase> all;
    for (const fs::path& file : filesIn(html5libFolder() / "tree-construction", ".dat")) {
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
