// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinemenu.h"

#include "editor/pageedits.h"

#include <array>

namespace luma {

namespace {

QString commandTitle(const QString& title)
{
    constexpr auto titles =
        std::to_array<const char*>({QT_TRANSLATE_NOOP("luma::OutlineMenu", "Insert"),
                                    QT_TRANSLATE_NOOP("luma::OutlineMenu", "Add Class"),
                                    QT_TRANSLATE_NOOP("luma::OutlineMenu", "Remove Class"),
                                    QT_TRANSLATE_NOOP("luma::OutlineMenu", "Add ID"),
                                    QT_TRANSLATE_NOOP("luma::OutlineMenu", "Remove ID"),
                                    QT_TRANSLATE_NOOP("luma::OutlineMenu", "Delete")});
    for (const char* each : titles) {
        if (title == QLatin1StringView(each))
            return OutlineMenu::tr(each);
    }
    return title;
}

} // namespace

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
            QMenu* const submenu = menu.addMenu(commandTitle(entry.title));
            submenu->setWindowTitle(entry.submenuTitle);
            addEntries(*submenu, entry.submenu);
        } else {
            const auto perform = [&edits = m_edits, action = entry.action, title = entry.title] {
                edits.perform(action, title);
            };
            // Those of a submenu are names of elements, classes or IDs.
            const QString title = &menu == this ? commandTitle(entry.title) : entry.title;
            connect(menu.addAction(title), &QAction::triggered, &m_edits, perform, Qt::QueuedConnection);
        }
    }
}

} // namespace luma
