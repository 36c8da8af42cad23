// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinemenu.h"

#include "editor/pageedits.h"

namespace luma {

OutlineMenu::OutlineMenu(const std::vector<TagMenuEntry>& entries, PageEdits& edits, QWidget* parent)
    : QMenu(parent), m_edits(edits)
{
    setObjectName(QStringLiteral("outlineMenu"));
    setAttribute(Qt::WA_DeleteOnClose);
    addEntries(*this, entries);
}

void OutlineMenu::addEntries(QMenu& menu, const std::vector<TagMenuEntry>& entries)
{
    for (const TagMenuEntry& entry : entries) {
        if (entry.isSeparator) {
            menu.addSeparator();
        } else if (!entry.submenu.empty()) {
            QMenu* const submenu = menu.addMenu(tr(entry.title.toUtf8()));
            submenu->setWindowTitle(entry.submenuTitle);
            addEntries(*submenu, entry.submenu);
        } else {
            const auto perform = [&edits = m_edits, action = entry.action, title = entry.title] {
                edits.perform(action, title);
            };
            // Those of a submenu are names of elements, classes or IDs.
            const QString title = &menu == this ? tr(entry.title.toUtf8()) : entry.title;
            connect(menu.addAction(title), &QAction::triggered, &m_edits, perform, Qt::QueuedConnection);
        }
    }
}

} // namespace luma
