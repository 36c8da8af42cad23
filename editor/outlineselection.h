// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QScopedValueRollback>

#include <vector>

namespace luma::html {
class Element;
class Node;
} // namespace luma::html

namespace luma {

class OutlineModel;
class OutlineView;
class ViewController;

/// Keeps the selected row of the outline and the selection in the rendering in step. Reports only what the
/// user selects in the outline, not where the selection follows an edit or the caret. Main thread.
class OutlineSelection final : public QObject
{
    Q_OBJECT

public:
    OutlineSelection(OutlineView& view, OutlineModel& model, ViewController& rendering, QObject* parent);

    /// The node of the selected row; null if no row is selected. As an element, null if it is none.
    [[nodiscard]] html::Node* node() const;
    [[nodiscard]] html::Element* element() const;
    [[nodiscard]] QPersistentModelIndex index() const;
    /// Whether nodes of all kinds can be selected.
    [[nodiscard]] bool hasAllNodes() const;
    /// Whether the element is selected because the caret is in it.
    [[nodiscard]] bool holdsCaret() const;
    void select(const html::Node* node);

    /// Selects the row of the element that holds the caret and draws it as the active one. `path` is as for
    /// OutlineModel::indexAtPath(); an unknown path is ignored.
    void setActiveElement(const std::vector<int>& path);

    /// Selects the element's contents in the rendering and scrolls there; the second one when the rendering next shows
    /// an edit, without scrolling.
    void showInPage();
    void showInPageWhenShown() { m_waitsForPage = true; }

    /// While the returned object lives, changes of the selection do not count as the user's.
    [[nodiscard]] QScopedValueRollback<bool> quietly() { return QScopedValueRollback(m_quiet, true); }

signals:
    /// The selected row has changed; there may be none.
    void changed();
    /// The user has selected this element.
    void selectedByUser();

private:
    void noteChange();
    void selectInPage(const char* options);

    OutlineView& m_view;
    OutlineModel& m_model;
    ViewController& m_rendering;
    bool m_quiet = false;
    bool m_waitsForPage = false;
};

} // namespace luma
