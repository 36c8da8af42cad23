// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLocale>
#include <QString>

#include <cstddef>

namespace luma {

/// A number with its noun, for one or many: "1 page", "2,000 pages".
inline QString counted(std::size_t number, const QString& one, const QString& many)
{
    return QLocale().toString(number) + QLatin1Char(' ') + (number == 1 ? one : many);
}

} // namespace luma
