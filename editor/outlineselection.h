// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QScopedValueRollback>

#include <vector>

namespace luma::html {
class Element;
}

namespace luma {

class OutlineModel;
class OutlineView;
class ViewController;

/// Keeps the row selected in the outline and the place selected in the rendering together. The user's hand in
/// the outline is told; where the selection follows an edit or the caret, nothing is. Main thread.
class OutlineSelection final : public QObject
{
    Q_OBJECT

public:
    OutlineSelection(OutlineView& view, OutlineModel& model, ViewController& rendering, QObject* parent);

    /// The element of the selected row; null when none is selected.
    [[nodiscard]] html::Element* element() const;
    /// The way from the root to that element as text: "html › body › p#intro".
    [[nodiscard]] QString path() const;
    void select(const html::Element* element);

    /// Selects the row of the element that holds the caret and draws it as the active one. `path` counts as
    /// in OutlineModel::indexAtPath and may lead nowhere.
    void setActiveElement(const std::vector<int>& path);

    /// Selects the element's contents in the rendering; the second one when the rendering is next shown.
    void showInPage();
    void showInPageWhenShown() { m_waitsForPage = true; }

    /// While the answer lives, changes of the selection are not the user's.
    [[nodiscard]] QScopedValueRollback<bool> quietly() { return QScopedValueRollback(m_quiet, true); }

signals:
    /// Another row is selected, or none.
    void changed();
    /// The user selected it.
    void selectedByUser();

private:
    void noteChange();

    OutlineView& m_view;
    OutlineModel& m_model;
    ViewController& m_rendering;
    bool m_quiet = false;
    bool m_waitsForPage = false;
};

} // namespace luma
