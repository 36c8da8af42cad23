// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/prettyprinter.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/document.h"
#include "html/element.h"
#include "html/serializer.h"
#include "html/tagtraits.h"

#include <vector>

namespace luma::html {

namespace {

bool isBlankText(const Node& node)
{
    const std::string* text = textOf(node);
    return text && isBlank(*text);
}

/// html, head, body and frameset, at whose edges the parser itself moves white space.
bool isFrame(const ParentNode& parent)
{
    const Element* element = parent.asElement();
    return !element || element->is("html") || element->is("head") || element->is("body") ||
           element->is("frameset");
}

bool declares(const Element& element, std::string_view property)
{
    return asciiLower(element.attr("style")).find(property) != std::string::npos;
}

bool isOnOwnLine(const Node& node, const ShownInLines& inLines)
{
    const Element* element = node.asElement();
    if (node.parent() && isFrame(*node.parent()) &&
        !(node.parent()->asElement() && node.parent()->asElement()->is("body")))
        return node.kind() != Node::Kind::Text;
    // What is shown in a line, as an inline block is, must touch what it touches.
    return element && isBlock(*element) && !declares(*element, "display") && !inLines.contains(element);
}

/// Whether the element's children get their own lines; otherwise it is written unchanged.
bool isBroken(const Element& element, const ShownInLines& inLines)
{
    if (inLines.contains(&element) || element.is("pre") || element.is("listing") || hasRawText(element) ||
        declares(element, "white-space"))
        return false;
    if (isFrame(element))
        return true;
    for (const Node* child = element.firstChild(); child; child = child->next()) {
        if (isOnOwnLine(*child, inLines))
            return true;
    }
    return false;
}

/// Walks the blocks of a page. Everything between two of them is a run, of which only the ends change.
class Printer final
{
public:
    explicit Printer(const ShownInLines& inLines) : m_inLines(inLines) {}

    std::string print(const Document& document)
    {
        if (document.hasByteOrderMark())
            m_markup = utf8ByteOrderMark;
        m_start = m_markup.size();
        m_levels.push_back({&document, document.firstChild()});
        while (!m_levels.empty())
            step();
        m_markup += '\n';
        return std::move(m_markup);
    }

private:
    struct Level
    {
        const ParentNode* parent;
        const Node* next;
    };

    void step()
    {
        Level& level = m_levels.back();
        const Node* const node = level.next;
        if (!node) {
            close();
        } else if (isOnOwnLine(*node, m_inLines)) {
            level.next = node->next();
            newLine(depth());
            open(*node);
        } else {
            level.next = writeRun(*level.parent, *node);
        }
    }

    void open(const Node& node)
    {
        const Element* element = node.asElement();
        if (!element || !isBroken(*element, m_inLines)) {
            serialize(node, m_markup, CodeForm::Code);
            return;
        }
        writeStartTag(*element, m_markup, CodeForm::Code);
        m_levels.push_back({element, element->firstChild()});
        m_touching = !isFrame(*element);
    }

    void close()
    {
        const Element* element = m_levels.back().parent->asElement();
        m_levels.pop_back();
        if (!element)
            return;
        if (!m_touching)
            newLine(depth());
        writeEndTag(*element, m_markup, CodeForm::Code);
        m_touching = false;
    }

    /// Writes the run that starts at `first` and gives the block that ends it, or null.
    const Node* writeRun(const ParentNode& parent, const Node& first)
    {
        std::vector<const Node*> run;
        const Node* end = &first;
        bool isShown = false;
        for (; end && !isOnOwnLine(*end, m_inLines); end = end->next()) {
            run.push_back(end);
            isShown = isShown || !(isInvisible(*end) || isBlankText(*end));
        }
        if (isShown)
            writeShown(run, isFrame(parent) || &first != parent.firstChild(), end || isFrame(parent));
        else
            writeUnseen(run);
        return end;
    }

    /// Writes a run with no visible content, each of its nodes on its own line.
    void writeUnseen(const std::vector<const Node*>& run)
    {
        m_touching = false;
        for (const Node* node : run) {
            if (isBlankText(*node))
                continue;
            newLine(depth());
            serialize(*node, m_markup, CodeForm::Code);
        }
    }

    /// Writes a run of text and inline elements. White space at its ends becomes a line break; without white
    /// space a break is added only next to a block.
    void writeShown(const std::vector<const Node*>& run, bool breakBefore, bool breakAfter)
    {
        std::string markup;
        for (const Node* node : run)
            serialize(*node, markup, CodeForm::Code);
        const std::size_t begin = markup.find_first_not_of(whiteSpace);
        const std::size_t end = markup.find_last_not_of(whiteSpace) + 1;
        if (breakBefore || begin > 0)
            newLine(depth());
        m_markup.append(markup, begin, end - begin);
        m_touching = !breakAfter && end == markup.size();
    }

    std::size_t depth() const { return m_levels.size() < 2 ? 0 : m_levels.size() - 1; }

    void newLine(std::size_t indentation)
    {
        if (m_markup.size() > m_start)
            m_markup += '\n';
        m_markup.append(indentation, ' ');
        m_touching = false;
    }

    const ShownInLines& m_inLines;
    std::string m_markup;
    std::size_t m_start = 0;
    std::vector<Level> m_levels;
    // Whether an end tag written now must follow directly, without a line break.
    bool m_touching = false;
};

} // namespace

std::string prettyPrint(const Document& document, const ShownInLines& inLines)
{
    return Printer(inLines).print(document);
}

} // namespace luma::html
