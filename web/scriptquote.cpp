// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/scriptquote.h"

namespace luma {

QString quotedForScript(const QString& text)
{
    QString quoted;
    quoted.reserve(text.size());
    for (const QChar c : text) {
        const bool plain = c.unicode() >= 0x20 && c != u'\'' && c != u'\\' && c != u'<' && c != QChar(0x7f) &&
                           c != QChar(0x2028) && c != QChar(0x2029) && !c.isSurrogate();
        if (plain)
            quoted += c;
        else
            quoted += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return quoted;
}

QString scriptCall(const QString& function, const QString& argument)
{
    return function + QStringLiteral("('") + quotedForScript(argument) + QStringLiteral("')");
}

QString scriptCall(const QString& function, const QString& first, const QString& second)
{
    return function + QStringLiteral("('") + quotedForScript(first) + QStringLiteral("', '") +
           quotedForScript(second) + QStringLiteral("')");
}

} // namespace luma
