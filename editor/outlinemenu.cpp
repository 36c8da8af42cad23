// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinemenu.h"

namespace luma {

OutlineMenu::OutlineMenu(const std::vector<TagMenuEntry>& entries, QWidget* parent) : QMenu(parent)
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
            QMenu* const submenu = menu.addMenu(entry.title);
            submenu->setWindowTitle(entry.submenuTitle);
            addEntries(*submenu, entry.submenu);
        } else {
            menu.addAction(entry.title, this, [this, action = entry.action, title = entry.title] {
                emit chosen(action, title);
            });
        }
    }
}

} // namespace luma
