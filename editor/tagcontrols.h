// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/cssnames.h"

#include <QObject>

class QMenu;
class QPoint;

namespace Ui {
class HTMLDocument;
}

namespace luma {

class OutlineSelection;
class PageEdits;
class TagRules;

/// The controls of a page's window that follow the element selected in the outline: the buttons and menus
/// that insert and delete, the outline's context menu, and the element's path at the foot. Main thread.
class TagControls final : public QObject
{
    Q_OBJECT

public:
    /// `names` are looked at whenever the context menu opens.
    TagControls(Ui::HTMLDocument& ui, const TagRules& rules, const CssNames& names,
                OutlineSelection& selection, PageEdits& edits, QObject* parent);

    /// Brings the controls up to date with the selected element.
    void update();

private:
    void fillInsertMenu(QMenu* menu);
    void menuWillOpen(const QPoint& where);

    Ui::HTMLDocument& m_ui;
    const TagRules& m_rules;
    const CssNames& m_names;
    OutlineSelection& m_selection;
    PageEdits& m_edits;
};

} // namespace luma
