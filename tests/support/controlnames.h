// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QTabBar>
#include <QTest>

namespace luma::test {

/// Whether the user can work with this widget itself, not as a part of another control.
inline bool isControl(const QWidget& window, const QWidget& widget)
{
    if (!widget.isVisibleTo(&window) || !widget.isEnabled() || widget.focusProxy() ||
        widget.objectName().startsWith(QLatin1String("qt_")) || qobject_cast<const QHeaderView*>(&widget) ||
        qobject_cast<const QTabBar*>(&widget))
        return false;
    const QWidget* const parent = widget.parentWidget();
    if (qobject_cast<const QLineEdit*>(parent) || qobject_cast<const QComboBox*>(parent) ||
        qobject_cast<const QAbstractSpinBox*>(parent) || qobject_cast<const QTabBar*>(parent) ||
        qobject_cast<const QAbstractItemView*>(parent))
        return false;
    return (widget.focusPolicy() & Qt::TabFocus) || qobject_cast<const QAbstractButton*>(&widget);
}

/// Fails the test for each control below `window` that a screen reader can't name, or can't tell from another one of
/// the same kind.
inline void checkControlNames(const QWidget& window)
{
    QSet<QString> seen;
    const QList<QWidget*> widgets = window.findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (widget->window() != window.window() || !isControl(window, *widget))
            continue;
        const QAccessibleInterface* const control = QAccessible::queryAccessibleInterface(widget);
        const QString name = control ? control->text(QAccessible::Name) : QString();
        const QString key = QString::number(control ? control->role() : 0) + QLatin1Char(' ') + name;
        if (name.isEmpty() || seen.contains(key))
            QTest::qFail(qPrintable((name.isEmpty() ? QStringLiteral("no accessible name: %1")
                                                    : QStringLiteral("accessible name of two controls: %1"))
                                        .arg(widget->objectName() + QLatin1Char(' ') + name)),
                         __FILE__, __LINE__);
        seen.insert(key);
    }
}

} // namespace luma::test
