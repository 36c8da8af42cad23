// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QString>

#include <map>
#include <string>

namespace luma {

/// How an item differs from what the other side of the site has at its place.
enum class SideMark { None, OnlyHere, NewerHere, NewerThere, Different };

/// The marks of a folder's items, by their names (bytes); items without one are left out.
using SideMarks = std::map<std::string, SideMark>;

/// For the user; empty for None.
inline QString textOf(SideMark mark)
{
    switch (mark) {
    case SideMark::OnlyHere:
        return QCoreApplication::translate("luma::SideMark", "only on this side");
    case SideMark::NewerHere:
        return QCoreApplication::translate("luma::SideMark", "newer on this side");
    case SideMark::NewerThere:
        return QCoreApplication::translate("luma::SideMark", "newer on the other side");
    case SideMark::Different:
        return QCoreApplication::translate("luma::SideMark", "different on the other side");
    case SideMark::None:
        break;
    }
    return {};
}

} // namespace luma
