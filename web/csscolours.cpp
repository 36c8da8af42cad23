// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/csscolours.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace luma {

namespace {

double channel(const QString& text, double whole)
{
    const bool isShare = text.endsWith(u'%');
    const double value = isShare ? text.chopped(1).toDouble() / 100 : text.toDouble() / whole;
    return std::clamp(value, 0.0, 1.0);
}

/// rgb() or hsl(), with commas or blanks (CSS Color 4).
QColor colourOf(const QString& function, const QString& values)
{
    static const QRegularExpression between(QStringLiteral("[\\s,/]+"));
    const QStringList parts = values.trimmed().split(between);
    if (parts.size() < 3)
        return {};
    const double opacity = parts.size() > 3 ? channel(parts[3], 1) : 1;
    if (function.startsWith(QLatin1String("rgb"), Qt::CaseInsensitive))
        return QColor::fromRgbF(static_cast<float>(channel(parts[0], 255)),
                                static_cast<float>(channel(parts[1], 255)),
                                static_cast<float>(channel(parts[2], 255)), static_cast<float>(opacity));
    const double turn = QString(parts[0]).remove(QStringLiteral("deg")).toDouble() / 360;
    return QColor::fromHslF(static_cast<float>(turn - std::floor(turn)),
                            static_cast<float>(channel(parts[1], 100)),
                            static_cast<float>(channel(parts[2], 100)), static_cast<float>(opacity));
}

/// CSS has the opacity last, and Qt first.
QColor colourOfDigits(const QString& digits)
{
    if (digits.size() == 4)
        return QColor(u'#' + QString(2, digits[3]) + QString(2, digits[0]) + QString(2, digits[1]) +
                      QString(2, digits[2]));
    return QColor(u'#' + (digits.size() == 8 ? digits.right(2) + digits.left(6) : digits));
}

/// Names from this place on count as colours.
std::vector<CssColour> coloursIn(const QString& text, qsizetype namesFrom)
{
    static const QRegularExpression colour(
        QStringLiteral("\"[^\"]*\"|'[^']*'|\\burl\\([^)]*\\)|"
                       "#([0-9a-f]{3,8})\\b(?!\\s*\\{)|\\b(rgba?|hsla?)\\(([^()]*)\\)|"
                       "(?<![-\\w#.])([a-z]{3,})(?![-\\w(.])"),
        QRegularExpression::CaseInsensitiveOption);
    std::vector<CssColour> colours;
    auto found = colour.globalMatch(text);
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        QColor read;
        if (match.capturedLength(1) > 0)
            read = colourOfDigits(match.captured(1));
        else if (match.capturedLength(2) > 0)
            read = colourOf(match.captured(2), match.captured(3));
        else if (match.capturedLength(4) > 0 && match.capturedStart(4) >= namesFrom)
            read = QColor(match.captured(4));
        if (read.isValid())
            colours.push_back({read, match.capturedStart(), match.capturedLength()});
    }
    return colours;
}

QString number(double value)
{
    return QString::number(value, 'g', 3);
}

QString hexText(const QColor& colour, const QString& written)
{
    QString digits = colour.name(QColor::HexArgb);
    digits = digits.mid(3) + (colour.alpha() < 255 ? digits.mid(1, 2) : QString());
    const bool wasShort = written.startsWith(u'#') && written.size() <= 5;
    bool isShort = wasShort;
    QString brief;
    for (qsizetype i = 0; i + 1 < digits.size(); i += 2) {
        isShort = isShort && digits[i] == digits[i + 1];
        brief += digits[i];
    }
    const QString text = isShort ? brief : digits;
    const bool isUpper =
        written.startsWith(u'#') && written != written.toLower() && written == written.toUpper();
    return u'#' + (isUpper ? text.toUpper() : text);
}

} // namespace

std::vector<CssColour> cssColoursIn(const QString& line)
{
    const qsizetype colon = line.indexOf(u':');
    return coloursIn(line, colon < 0 ? line.size() : colon);
}

std::vector<CssColour> cssColoursIn(const QString& property, const QString& value)
{
    static const QRegularExpression namesOwnThings(QStringLiteral(
        "^(font|animation|grid|content|counter|quotes|transition|will-change|page|list-style-type)"));
    return coloursIn(value, property.contains(namesOwnThings) ? value.size() : 0);
}

QString cssColourText(const QColor& colour, const QString& written)
{
    const QString function = written.section(u'(', 0, 0).toLower();
    const bool isRgb = function.startsWith(QLatin1String("rgb"));
    if (!written.contains(u'(') || (!isRgb && !function.startsWith(QLatin1String("hsl"))))
        return hexText(colour, written);
    QStringList parts;
    if (isRgb) {
        parts = {QString::number(colour.red()), QString::number(colour.green()),
                 QString::number(colour.blue())};
    } else {
        const int hue = std::max(colour.hslHue(), 0); // -1 for greys
        parts = {QString::number(hue), number(std::round(colour.hslSaturationF() * 1000) / 10) + u'%',
                 number(std::round(colour.lightnessF() * 1000) / 10) + u'%'};
    }
    const bool isOpaque = colour.alpha() == 255;
    const QString opacity = number(std::round(colour.alphaF() * 1000) / 1000);
    if (!written.contains(u','))
        return function.left(3) + u'(' + parts.join(u' ') +
               (isOpaque ? QString() : QStringLiteral(" / ") + opacity) + u')';
    const bool hasOpacity = !isOpaque || function.size() > 3;
    return function.left(3) + (hasOpacity ? QStringLiteral("a(") : QStringLiteral("(")) +
           parts.join(QStringLiteral(", ")) + (hasOpacity ? QStringLiteral(", ") + opacity : QString()) +
           u')';
}

} // namespace luma
