// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/numbersteps.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace luma {

namespace {

/// A step in tenths; 0 for other keys.
int tenthsOf(const QKeyEvent& press)
{
    const auto modifiers = press.modifiers() & ~Qt::KeypadModifier;
    const int size = modifiers == Qt::NoModifier      ? 10
                     : modifiers == Qt::ShiftModifier ? 100
                     : modifiers == Qt::AltModifier   ? 1
                                                      : 0;
    return press.key() == Qt::Key_Up ? size : press.key() == Qt::Key_Down ? -size : 0;
}

/// The number with so many tenths more, with as many decimals as it needs.
QString raised(const QString& number, int tenths)
{
    const auto decimals = [](const QString& text) {
        const qsizetype point = text.indexOf(u'.');
        return point < 0 ? 0 : static_cast<int>(text.size() - point - 1);
    };
    const double value = number.toDouble() + tenths / 10.0;
    QString text = QString::number(value, 'f', std::max(decimals(number), tenths % 10 == 0 ? 0 : 1));
    if (text.contains(u'.'))
        text.remove(QRegularExpression(QStringLiteral("\\.?0+$")));
    return text == u"-0" ? QStringLiteral("0") : text;
}

} // namespace

NumberSteps::NumberSteps(QLineEdit* field) : QObject(field), m_field(field)
{
    field->installEventFilter(this);
}

bool NumberSteps::step(const QKeyEvent& press)
{
    // Not in colours, names and strings.
    static const QRegularExpression numbers(
        QStringLiteral("\"[^\"]*\"|'[^']*'|#[\\w-]*|(?<![\\w.-])([-+]?(?:\\d+\\.?\\d*|\\.\\d+))(?:%|[a-z]*)|"
                       "[a-z_-][\\w-]*"),
        QRegularExpression::CaseInsensitiveOption);
    const bool isSelected = m_field->hasSelectedText();
    const int at = isSelected ? m_field->selectionStart() : m_field->cursorPosition();
    auto found = numbers.globalMatch(m_field->text());
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        if (match.capturedLength(1) == 0 || match.capturedEnd() < at)
            continue;
        if (match.capturedStart() > at && !isSelected)
            return false;
        const QString text = raised(match.captured(1), tenthsOf(press));
        m_field->setSelection(static_cast<int>(match.capturedStart(1)),
                              static_cast<int>(match.capturedLength(1)));
        m_field->insert(text);
        m_field->setSelection(static_cast<int>(match.capturedStart(1)), static_cast<int>(text.size()));
        emit stepped(m_field->text());
        return true;
    }
    return false;
}

bool NumberSteps::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_field || m_field->isReadOnly() ||
        (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride))
        return false;
    const auto& press = *static_cast<QKeyEvent*>(event);
    if (tenthsOf(press) == 0)
        return false;
    if (event->type() == QEvent::KeyPress)
        return step(press) || press.modifiers() != Qt::NoModifier;
    event->accept();
    return true;
}

} // namespace luma
