// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/displaytext.h"

#include "base/ascii.h"

#include <algorithm>

namespace luma {

namespace {

/// Empty for a character that is shown unchanged.
QString escapeOf(char16_t unit)
{
    if (unit == u'\n')
        return QStringLiteral("\\n");
    if (unit == u'\t')
        return QStringLiteral("\\t");
    if (unit < 0x20 || unit == 0x7f || unit == 0x85)
        return QStringLiteral("\\x%1").arg(unit, 2, 16, QLatin1Char('0'));
    if (unit == 0x2028 || unit == 0x2029)
        return QStringLiteral("\\u%1").arg(unit, 4, 16);
    return {};
}

bool isAscii(std::string_view name)
{
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

QString decoded(std::string_view name)
{
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

} // namespace

QString displayText(std::string_view name)
{
    const QString text = decoded(name);
    QString shown;
    shown.reserve(text.size());
    for (const QChar unit : text) {
        const QString escape = escapeOf(unit.unicode());
        if (escape.isEmpty())
            shown += unit;
        else
            shown += escape;
    }
    return shown;
}

std::string collationKey(std::string_view name)
{
    if (!isAscii(name))
        return decoded(name).toCaseFolded().toStdString();
    return asciiLower(name);
}

} // namespace luma
