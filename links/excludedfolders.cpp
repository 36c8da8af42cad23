// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/excludedfolders.h"

#include <QString>
#include <QStringList>

#include <algorithm>

namespace luma {

namespace {

QString textOf(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QRegularExpression startingWith(const QString& name)
{
    return QRegularExpression(QLatin1Char('^') + name + QLatin1Char('/'),
                              QRegularExpression::CaseInsensitiveOption);
}

} // namespace

ExcludedFolders::ExcludedFolders(std::string_view names)
{
    const QStringList parts = textOf(names).split(QLatin1Char(','));
    for (const QString& part : parts) {
        const QString name = part.trimmed();
        if (name.isEmpty())
            continue;
        const QRegularExpression expression = startingWith(name);
        m_expressions.push_back(expression.isValid() ? expression
                                                     : startingWith(QRegularExpression::escape(name)));
    }
}

bool ExcludedFolders::contain(std::string_view subpath) const
{
    const QString text = m_expressions.empty() ? QString() : textOf(subpath);
    return std::any_of(m_expressions.begin(), m_expressions.end(), [&](const QRegularExpression& expression) {
        return expression.match(text).hasMatch();
    });
}

} // namespace luma
