// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/files.h"
#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/pagecodec.h"
#include "html/pagelanguage.h"
#include "html/pagewriter.h"
#include "html/parse.h"
#include "lumactl/commandarguments.h"
#include "lumactl/linedifference.h"
#include "lumactl/lumactlcommands.h"
#include "lumactl/standardoutput.h"

#include <algorithm>
#include <array>
#include <optional>

// One edit of a page's elements, written with the bytes of all else.

namespace luma {

namespace {

constexpr auto edits =
    std::to_array<std::string_view>({"--text", "--html", "--attr", "--remove-attr", "--before", "--after"});

struct Edit
{
    std::string_view name;
    std::string value;

    [[nodiscard]] bool replacesContents() const
    {
        return name == "--text" || name == "--html" || name == "--remove";
    }
};

/// The one edit that the arguments name; nothing when they name none or several.
std::optional<Edit> editOf(const CommandArguments& line)
{
    std::vector<Edit> found;
    for (const std::string_view name : edits) {
        for (std::string& value : line.values(name))
            found.push_back({name, std::move(value)});
    }
    if (line.has("--remove"))
        found.push_back({"--remove", {}});
    return found.size() == 1 ? std::optional(std::move(found.front())) : std::nullopt;
}

bool isAttributeName(std::string_view name)
{
    return !name.empty() && name.find_first_of(" \t\r\n\f\"'/>=<") == std::string_view::npos;
}

/// What is wrong with the edit's value; empty if nothing is.
std::string complaintAbout(const Edit& edit)
{
    const std::size_t equals = edit.value.find('=');
    if (edit.name == "--attr" &&
        (equals == std::string::npos || !isAttributeName(edit.value.substr(0, equals))))
        return "--attr needs NAME=VALUE";
    if (edit.name == "--remove-attr" && !isAttributeName(edit.value))
        return "--remove-attr needs the name of an attribute";
    return {};
}

void setText(html::Element& element, const std::string& text)
{
    html::Node* const only = element.firstChild();
    if (only && !only->next() && html::textOf(*only)) {
        static_cast<html::CharacterData*>(only)->setData(text);
        return;
    }
    html::NodeList nodes;
    nodes.push_back(html::CharacterData::text(text));
    element.swapChildren(nodes);
}

Result<void> setContents(html::Element& element, const std::string& markup)
{
    auto nodes = html::parseSourceFragment(markup, element);
    if (!nodes)
        return nodes.error();
    element.swapChildren(*nodes);
    return {};
}

Result<void> insertBeside(html::Element& element, html::Node* next, const std::string& markup)
{
    html::Element* const parent = element.parent()->asElement();
    if (!parent)
        return Error{"nothing can stand beside the root element"};
    auto nodes = html::parseSourceFragment(markup, *parent);
    if (!nodes)
        return nodes.error();
    for (html::NodePtr& node : *nodes)
        parent->insert(std::move(node), next);
    return {};
}

Result<void> apply(const Edit& edit, html::Element& element)
{
    if (edit.name == "--html")
        return setContents(element, edit.value);
    if (edit.name == "--before")
        return insertBeside(element, &element, edit.value);
    if (edit.name == "--after")
        return insertBeside(element, element.next(), edit.value);
    if (edit.name == "--text") {
        setText(element, edit.value);
    } else if (edit.name == "--attr") {
        const std::size_t equals = edit.value.find('=');
        element.setAttr(edit.value.substr(0, equals), edit.value.substr(equals + 1));
    } else if (edit.name == "--remove-attr") {
        element.removeAttr(edit.value);
    } else {
        element.remove();
    }
    return {};
}

/// Without elements inside others of the list.
std::vector<html::Element*> outermost(const std::vector<html::Element*>& elements)
{
    std::vector<html::Element*> result;
    for (html::Element* element : elements) { // in document order
        if (result.empty() || !element->isInside(*result.back()))
            result.push_back(element);
    }
    return result;
}

ExitCode failed(std::string_view text)
{
    complain(text);
    return ExitCode::Found;
}

ExitCode write(const std::string& page, const std::string& before, const std::string& after, bool isDry)
{
    StandardOutput output;
    if (isDry)
        output.text() += lineDifference(page, before, after);
    else if (const auto written = before == after ? Result<void>() : writeFile(page, after); !written)
        return failed(written.error().text);
    return output.finish() ? ExitCode::Ok : ExitCode::Found;
}

ExitCode editPage(const CommandArguments& line, const Edit& edit)
{
    const std::string& page = line.operands()[0];
    const auto bytes = readFile(page);
    if (!bytes)
        return unusable(bytes.error().text);
    const html::PageLanguage language = html::pageLanguage(page, *bytes);
    if (language.kind == html::PageLanguage::Kind::OtherXml)
        return unusable(page + ": Not a page");
    html::PageCodec codec;
    auto document = codec.read(*bytes, language.markup());
    if (!document)
        return unusable(page + ": " + document.error().text);
    std::vector<html::Element*> elements = (*document)->select(line.operands()[1]);
    std::erase_if(elements, [](const html::Element* element) { return html::isServerCode(*element); });
    if (elements.empty())
        return failed(page + ": no element matches " + line.operands()[1]);
    if (elements.size() > 1 && !line.has("--all"))
        return failed(page + ": " + std::to_string(elements.size()) + " elements match " +
                      line.operands()[1] + "; --all edits all of them");
    if (edit.replacesContents())
        elements = outermost(elements);
    if (edit.name != "--text")
        (*document)->trustServerCode(edit.value);
    for (html::Element* const element : elements) {
        if (const auto done = apply(edit, *element); !done)
            return failed(page + ": " + done.error().text);
    }
    const auto written = codec.write(**document, language.markup());
    if (!written)
        return failed(page + ": " + written.error().text);
    if (!written->parsed && !written->isAlike && !html::isEmptyPartOfTable(**document))
        return failed(page + ": HTML has no way to write this; a browser would read another page");
    return write(page, *bytes, written->bytes, line.has("--dry-run"));
}

ExitCode run(const std::vector<std::string>& arguments)
{
    const CommandArguments line(arguments, {"--remove", "--dry-run", "--all"}, {edits.begin(), edits.end()});
    if (!line.error().empty())
        return wrongUsage(editCommand, line.error());
    if (line.operands().size() != 2)
        return wrongUsage(editCommand, "a page and a selector are needed");
    const std::optional<Edit> edit = editOf(line);
    if (!edit)
        return wrongUsage(editCommand, "one edit is needed");
    if (const std::string complaint = complaintAbout(*edit); !complaint.empty())
        return wrongUsage(editCommand, complaint);
    return editPage(line, *edit);
}

} // namespace

const LumactlCommand editCommand = {
    "edit", "PAGE SELECTOR EDIT [--all] [--dry-run]", "change an element of a page and no other byte of it",
    "SELECTOR is a tag name or *, #id, .class, [attr], [attr=value], [attr^=prefix],\n"
    ":nth-child(2), :nth-of-type(2), any of these joined, steps from ancestors\n"
    "separated by blanks or from parents by >, and several of these separated by\n"
    "commas: \"head link[rel=icon], ul.menu > li\". EDIT is one of:\n"
    "\n"
    "  --text TEXT          replace the contents by text\n"
    "  --html MARKUP        replace the contents by markup\n"
    "  --attr NAME=VALUE    set an attribute\n"
    "  --remove-attr NAME   remove it\n"
    "  --before MARKUP      insert markup before the element\n"
    "  --after MARKUP       insert it after the element\n"
    "  --remove             remove the element\n"
    "\n"
    "  --all                edit all elements that match; else several are an error\n"
    "  --dry-run            write nothing, print the lines that would change\n"
    "\n"
    "Server code stays code, but in TEXT. The page stays in its encoding. The exit code is\n"
    "1 if no element matches, or the page could not be changed.\n",
    run};

} // namespace luma
