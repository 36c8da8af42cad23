// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "editor/stylerules.h"
#include "page/cssedits.h"

#include <QObject>
#include <QPersistentModelIndex>

#include <string>

class QUndoStack;

namespace luma {

namespace html {
class Element;
}

class OutlineModel;
class PageEdits;
class PageTree;
class StyleSheetEditor;

/// Makes the edits of style rules: in a file as unsaved text of its sheet, in a style attribute or element as an edit of the
/// page. Each is one step of the page's undo history. Main thread.
class StyleEdits final : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        PageTree& tree;
        OutlineModel& outline;
        PageEdits& edits;
        StyleSheetEditor& sheets;
        QUndoStack& stack;
    };

    StyleEdits(const Parts& parts, QObject* parent);

    /// Makes the edit, under this name, in the source that has the text `sheet`; says so if there is another text by now, or
    /// if the edit is an error.
    void make(const StyleSource& source, const std::string& sheet, const Result<CssEdit>& edit,
              const QString& name);

    /// Moves the declarations of the row's style attribute to a new rule for this class at the end of the sheet, and gives the
    /// element the class: one step.
    void moveToClass(const QPersistentModelIndex& row, const StyleSource& source, const std::string& sheet,
                     const QString& className);

    /// Whether the steps of the history that are not saved change the page itself, and not sheets alone.
    static bool changePage(const QUndoStack& stack);

signals:
    /// An edit was not made, for this reason.
    void refused(const QString& reason);

private:
    Result<void> moveStyle(html::Element& element, const StyleSource& source, const std::string& sheet,
                           const std::string& className);
    void makeInPage(const StyleSource& source, const std::string& sheet, const CssEdit& edit,
                    const QString& name);

    Parts m_parts;
};

} // namespace luma
