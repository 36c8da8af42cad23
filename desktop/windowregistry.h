// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QMenu;
class QWidget;

namespace luma {

/// The open windows of the application, in the order they came, and the Windows menus that list them. A
/// window is entered once and leaves by itself when it is closed or destroyed. Main thread only.
class WindowRegistry final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The registry of the application, made at the first call.
    static WindowRegistry& instance();

    void add(QWidget* window);
    /// The same for the window that the others lead back to: it stays listed, first, while it is closed.
    void addHome(QWidget* window);
    [[nodiscard]] QList<QWidget*> windows() const;

    /// The first window whose title is exactly `title`, or none.
    [[nodiscard]] QWidget* windowTitled(const QString& title) const;

    /// Brings a window to the front, out of the task bar too, with the keyboard.
    static void bringToFront(QWidget* window);

    /// Makes `menu` list the windows whenever it opens, below the entries it has already. The active window's
    /// entry is ticked.
    void fill(QMenu* menu);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void listIn(QMenu* menu) const;

    QList<QPointer<QWidget>> m_windows;
    QPointer<QWidget> m_home;
};

} // namespace luma
