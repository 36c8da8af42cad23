// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/styleedits.h"

#include "editor/outlinemodel.h"
#include "editor/pageedits.h"
#include "editor/stylesheeteditor.h"
#include "html/cssreferences.h"
#include "html/element.h"
#include "page/classedits.h"
#include "page/pagecommands.h"
#include "page/pagetree.h"
#include "page/subtreechange.h"

#include <QPointer>
#include <QUndoStack>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

constexpr int sheetCommandId = 0x637373;
constexpr std::size_t contextLength = 40;

/// An edit of a sheet's file. Where the text has been changed since, by typing or tidying, it looks for the place by what
/// stands around it, and gives up where that is gone or there twice.
class SheetCommand final : public QUndoCommand
{
public:
    SheetCommand(StyleSheetEditor& editor, StyleSource source, const std::string& sheet, const CssEdit& edit,
                 const QString& name)
        : QUndoCommand(name),
          m_editor(&editor),
          m_source(std::move(source)),
          m_edit(edit),
          m_inverse(edit.inverse(sheet)),
          m_before(
              sheet.substr(edit.at - std::min(edit.at, contextLength), std::min(edit.at, contextLength))),
          m_after(sheet.substr(edit.at + edit.length, contextLength))
    {}

    [[nodiscard]] int id() const override { return sheetCommandId; }
    void redo() override { make(m_edit, m_inverse.text); }
    void undo() override { make(m_inverse, m_edit.text); }

private:
    void make(CssEdit edit, const std::string& old)
    {
        const auto text = m_editor ? m_editor->textOfFile(m_source.file) : std::nullopt;
        const std::string whole = m_before + old + m_after;
        std::size_t at = edit.at - std::min(edit.at, m_before.size());
        if (!text)
            return;
        if (text->compare(at, whole.size(), whole) != 0) {
            at = text->find(whole);
            if (at == std::string::npos || text->find(whole, at + 1) != std::string::npos)
                return;
        }
        edit.at = at + m_before.size();
        m_editor->editFile(m_source.file, edit);
    }

    QPointer<StyleSheetEditor> m_editor;
    StyleSource m_source;
    CssEdit m_edit;
    CssEdit m_inverse;
    std::string m_before;
    std::string m_after;
};

} // namespace

StyleEdits::StyleEdits(const Parts& parts, QObject* parent) : QObject(parent), m_parts(parts) {}

void StyleEdits::make(const StyleSource& source, const std::string& sheet, const Result<CssEdit>& edit,
                      const QString& name)
{
    if (!edit) {
        emit refused(QString::fromStdString(edit.error().text));
    } else if (source.kind != StyleSource::Kind::File) {
        makeInPage(source, sheet, *edit, name);
    } else if (m_parts.sheets.textOfFile(source.file) != sheet) {
        emit refused(tr("The style sheet has changed meanwhile."));
    } else {
        m_parts.stack.push(new SheetCommand(m_parts.sheets, source, sheet, *edit, name));
    }
}

void StyleEdits::makeInPage(const StyleSource& source, const std::string& sheet, const CssEdit& edit,
                            const QString& name)
{
    const html::Element* const element = elementAtPath(*m_parts.tree.document(), source.path);
    const bool isAttribute = source.kind == StyleSource::Kind::Attribute;
    if (!element || (isAttribute ? std::string(element->attr("style")) : element->html()) != sheet) {
        emit refused(tr("The style sheet has changed meanwhile."));
        return;
    }
    const QPersistentModelIndex row = m_parts.outline.indexOf(element);
    const std::string text = edit.applied(sheet);
    if (!isAttribute)
        m_parts.edits.setStyles(row, QString::fromStdString(text), name);
    else if (text.empty())
        m_parts.edits.changeAttribute(row, "style", QString(), {});
    else
        m_parts.edits.setAttributes(row, {{"style", text}}, name);
}

void StyleEdits::moveToClass(const QPersistentModelIndex& row, const StyleSource& source,
                             const std::string& sheet, const QString& className)
{
    m_parts.edits.editElement(row,
                              [self = QPointer(this), source, sheet,
                               name = className.toStdString()](html::Element& element) -> Result<void> {
                                  return self ? self->moveStyle(element, source, sheet, name)
                                              : Result<void>();
                              });
}

Result<void> StyleEdits::moveStyle(html::Element& element, const StyleSource& source,
                                   const std::string& sheet, const std::string& className)
{
    const bool isFile = source.kind == StyleSource::Kind::File;
    html::Element* const block = isFile ? nullptr : elementAtPath(*m_parts.tree.document(), source.path);
    const auto now = isFile  ? m_parts.sheets.textOfFile(source.file)
                     : block ? std::optional(block->html())
                             : std::nullopt;
    if (now != sheet)
        return Error{tr("The style sheet has changed meanwhile.").toStdString()};
    const QString name = tr("Move Style to Class");
    const CssEdit edit =
        withCssRule(sheet, '.' + cssIdentifier(className), std::string(element.attr("style")));
    std::vector<html::Attribute> attributes = withClass(element.attributes(), className);
    std::erase_if(attributes, [](const html::Attribute& attribute) {
        return attribute.name == std::string_view("style");
    });
    PageCommands commands(m_parts.tree, m_parts.stack);
    m_parts.stack.beginMacro(name);
    if (block)
        commands.setInnerMarkup(*block, QString::fromStdString(edit.applied(sheet)), name);
    else
        m_parts.stack.push(new SheetCommand(m_parts.sheets, source, sheet, edit, name));
    commands.setAttributes(element, std::move(attributes), name);
    m_parts.stack.endMacro();
    return {};
}

bool StyleEdits::changePage(const QUndoStack& stack)
{
    if (stack.cleanIndex() < 0)
        return true;
    for (int i = std::min(stack.index(), stack.cleanIndex()); i < std::max(stack.index(), stack.cleanIndex());
         ++i) {
        if (stack.command(i)->id() != sheetCommandId)
            return true;
    }
    return false;
}

} // namespace luma
