// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessible>
#include <QApplication>
#include <QSet>
#include <QTest>
#include <QWidget>

namespace luma::test {

/// The object names from the window down, and the class.
inline QString nameOfStop(const QWidget& stop)
{
    QString name = QLatin1StringView(stop.metaObject()->className());
    for (const QObject* each = &stop; each; each = each->parent())
        name.prepend(each->objectName() + u'/');
    return name;
}

/// What Tab should reach in a window: its visible, enabled widgets that take the focus by Tab.
inline QSet<QString> tabStops(const QWidget& window)
{
    QSet<QString> stops;
    const QList<QWidget*> widgets = window.findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (widget->isVisibleTo(&window) && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) &&
            !widget->focusProxy())
            stops.insert(nameOfStop(*widget));
    }
    return stops;
}

/// Presses Tab or Backtab, from the widget with the focus on, until the walk comes round, and gives its stops.
/// Fails the test at a stop that has no accessible name or keeps the focus, and when the walk does not come
/// back to its first stop.
inline QSet<QString> tabWalk(Qt::Key key)
{
    const Qt::KeyboardModifiers modifiers = key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier;
    QSet<QString> stops;
    const auto fail = [](const QString& what, const QWidget* stop) {
        QTest::qFail(qPrintable(what + (stop ? nameOfStop(*stop) : QString())), __FILE__, __LINE__);
    };
    QWidget* const first = QApplication::focusWidget();
    QWidget* stop = first;
    while (stop && !stops.contains(nameOfStop(*stop))) {
        stops.insert(nameOfStop(*stop));
        const QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(stop);
        if (!accessible || accessible->text(QAccessible::Name).isEmpty())
            fail(QStringLiteral("no accessible name: "), stop);
        QTest::keyClick(stop, key, modifiers);
        // A web page hands the focus on in its own time.
        if (!QTest::qWaitFor([stop] { return QApplication::focusWidget() != stop; }))
            fail(QStringLiteral("keeps the focus: "), stop);
        stop = QApplication::focusWidget();
    }
    if (!stop || stop != first)
        fail(QStringLiteral("the walk does not come round: "), stop);
    return stops;
}

} // namespace luma::test
