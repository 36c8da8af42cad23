// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/panekeys.h"

#include <QApplication>
#include <QShortcut>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

bool takesFocus(const QWidget& widget)
{
    return widget.isVisible() && widget.isEnabled() &&
           (widget.focusPolicy() != Qt::NoFocus || widget.focusProxy());
}

/// Where the focus goes in the pane; null if it is hidden or off.
QWidget* targetIn(const PaneKeys::Pane& pane)
{
    QWidget* const last = pane.whole->focusWidget();
    if (last && last != pane.whole && takesFocus(*last))
        return last;
    // Instead of what is on a tab that is covered, its tab bar.
    for (QWidget* widget = pane.first; widget != pane.whole; widget = widget->parentWidget()) {
        if (takesFocus(*widget))
            return widget;
    }
    return nullptr;
}

} // namespace

PaneKeys::PaneKeys(std::vector<Pane> panes, QWidget& page, const std::vector<QWidget*>& others)
    : m_panes(std::move(panes)), m_page(page)
{
    for (QWidget* const widget : others) {
        auto* const escape = new QShortcut(Qt::Key_Escape, widget);
        // What is edited in a row of a tree keeps the key.
        escape->setContext(widget->focusPolicy() == Qt::NoFocus ? Qt::WidgetWithChildrenShortcut
                                                                : Qt::WidgetShortcut);
        connect(escape, &QShortcut::activated, &m_page, qOverload<>(&QWidget::setFocus));
    }
}

void PaneKeys::go(int step) const
{
    const QWidget* const focus = QApplication::focusWidget();
    const auto holdsFocus = [focus](const Pane& pane) { return focus && pane.whole->isAncestorOf(focus); };
    const auto current = std::find_if(m_panes.begin(), m_panes.end(), holdsFocus);
    if (current == m_panes.end()) {
        m_page.setFocus();
        return;
    }
    const auto count = static_cast<int>(m_panes.size());
    const auto from = static_cast<int>(current - m_panes.begin());
    for (int i = 1; i < count; ++i) {
        const int at = (from + (i * step) + count) % count;
        if (QWidget* const target = targetIn(m_panes[static_cast<std::size_t>(at)])) {
            // Not with Tab as the reason: the engine would move the caret to the first field or link.
            target->setFocus();
            return;
        }
    }
}

} // namespace luma
