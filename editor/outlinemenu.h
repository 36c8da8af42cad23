// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/tagmenu.h"

#include <QMenu>

#include <vector>

namespace luma {

/// The outline's context menu, shown from its entries. What is chosen is told once the menu is closed.
class OutlineMenu final : public QMenu
{
    Q_OBJECT

public:
    OutlineMenu(const std::vector<TagMenuEntry>& entries, QWidget* parent);

signals:
    /// `title` is the chosen entry's.
    void chosen(luma::TagAction action, const QString& title);

private:
    void addEntries(QMenu& menu, const std::vector<TagMenuEntry>& entries);
};

} // namespace luma
