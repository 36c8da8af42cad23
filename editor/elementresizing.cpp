// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/elementresizing.h"

#include "base/ascii.h"
#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "editor/pageedits.h"
#include "html/cssrules.h"
#include "page/cssedits.h"
#include "page/subtreechange.h"
#include "web/viewcontroller.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace luma {

namespace {

constexpr std::array<const char*, 5> resizable = {"img", "video", "iframe", "embed", "object"};

std::string withLength(const std::string& style, std::string_view side, int pixels)
{
    const std::string value = std::to_string(pixels) + "px";
    const std::vector<CssDeclaration> declarations = readCssDeclarations(style);
    // The last one counts.
    for (auto each = declarations.rbegin(); each != declarations.rend(); ++each) {
        if (each->isOff || !equalIgnoringAsciiCase(each->name.of(style), side))
            continue;
        const auto edit = withCssValue(style, *each, each->isImportant() ? value + " !important" : value);
        return edit ? edit->applied(style) : style;
    }
    return style;
}

} // namespace

ElementResizing::ElementResizing(OutlineSelection& selection, PageEdits& edits, ViewController& rendering,
                                 QObject* parent)
    : QObject(parent),
      m_selection(selection),
      m_edits(edits),
      m_rendering(rendering),
      m_handles(new SizeHandles(*rendering.webView()))
{
    connect(&selection, &OutlineSelection::changed, this, &ElementResizing::followSelected);
    connect(&rendering, &ViewController::selectionRestored, this, &ElementResizing::followSelected);
    connect(&rendering.webView()->editorPage(), &EditorPage::ready, this, &ElementResizing::followSelected);
    connect(m_handles, &SizeHandles::resized, this, &ElementResizing::write);
    connect(m_handles, &SizeHandles::refused, this, &ElementResizing::refused);
}

void ElementResizing::followSelected()
{
    const html::Element* const element = m_selection.element();
    const bool isResizable = element && std::any_of(resizable.begin(), resizable.end(),
                                                    [element](const char* tag) { return element->is(tag); });
    const auto path = isResizable && m_rendering.isFollowing() ? pathForScript(*element) : std::nullopt;
    m_row = m_selection.index();
    if (!path)
        m_handles->clear();
    else
        m_handles->follow(*path, element->is("img") || element->is("video") ? SizeHandles::Ratio::Kept
                                                                            : SizeHandles::Ratio::Free);
}

// A length that follows by itself is not written where it wasn't.
void ElementResizing::write(const SizeHandles::Length& width, const SizeHandles::Length& height)
{
    const html::Element* const element = OutlineModel::elementAt(m_row);
    if (!element)
        return;
    using Decider = SizeHandles::Decider;
    const bool isInStyle = width.decider == Decider::Style || height.decider == Decider::Style;
    std::string style(element->attr("style"));
    std::vector<html::Attribute> attributes;
    for (const auto& [side, length] : {std::pair("width", width), std::pair("height", height)}) {
        if (!length.isChanged || length.decider == Decider::Sheet)
            continue;
        if (length.decider == Decider::Style)
            style = withLength(style, side, length.pixels);
        else if (!isInStyle || element->hasAttr(side))
            attributes.push_back({side, std::to_string(length.pixels)});
    }
    if (style != element->attr("style"))
        attributes.push_back({"style", style});
    if (!attributes.empty())
        m_edits.setAttributes(m_row, std::move(attributes), tr("Resize"));
}

} // namespace luma
