// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QMenu;
class QWidget;

namespace luma {

/// The application's open windows, in the order they were opened, and the Windows menus that list them. A
/// window is added once and removed when it is closed or destroyed. Main thread only.
class WindowRegistry final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The application's registry, created by the first call.
    static WindowRegistry& instance();

    /// `subject` is what the window shows, if only one window is to show it; it lives as long as the window.
    void add(QWidget* window, const QObject* subject = nullptr);
    /// Adds the main window, which is listed first and stays listed while it is closed.
    void addHome(QWidget* window);
    [[nodiscard]] QList<QWidget*> windows() const;

    /// The window added with `subject`, or null.
    [[nodiscard]] QWidget* windowShowing(const QObject* subject) const;

    /// Raises a window, restores it when minimized, and gives it the keyboard focus.
    static void bringToFront(QWidget* window);

    /// Lists the windows below the menu's other entries whenever it opens; the active window is checked.
    void fill(QMenu* menu);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void listIn(QMenu* menu) const;

    QList<QPointer<QWidget>> m_windows;
    QPointer<QWidget> m_home;
};

} // namespace luma
