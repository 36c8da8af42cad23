// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/tagmenu.h"

#include <QMenu>

#include <vector>

namespace luma {

class PageEdits;

/// The outline's context menu, built from the given entries. Runs the chosen entry after closing, then
/// deletes itself.
class OutlineMenu final : public QMenu
{
    Q_OBJECT

public:
    OutlineMenu(const std::vector<TagMenuEntry>& entries, PageEdits& edits, QWidget* parent);

private:
    void addEntries(QMenu& menu, const std::vector<TagMenuEntry>& entries);

    PageEdits& m_edits;
};

} // namespace luma
