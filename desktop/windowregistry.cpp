// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/windowregistry.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QWidget>

#include <algorithm>

namespace luma {

namespace {

constexpr const char* listedMark = "luma_listedWindow";
// The address of what a window shows.
constexpr const char* subjectProperty = "luma_subject";

QString entryText(const QWidget& window)
{
    QString title = window.windowTitle();
    if (title.isEmpty())
        return QObject::tr("Untitled");
    title.replace(QStringLiteral("[*]"), window.isWindowModified() ? QStringLiteral("*") : QString());
    // A single ampersand would mark a mnemonic.
    return title.replace(u'&', QStringLiteral("&&"));
}

} // namespace

WindowRegistry& WindowRegistry::instance()
{
    // Owned by the application, so that it is destroyed before the window system's connection.
    static QPointer<WindowRegistry> registry;
    if (!registry)
        registry = new WindowRegistry(qApp);
    return *registry;
}

void WindowRegistry::add(QWidget* window, const QObject* subject)
{
    if (subject)
        window->setProperty(subjectProperty, QVariant::fromValue(reinterpret_cast<quintptr>(subject)));
    m_windows.removeAll(QPointer<QWidget>());
    if (m_windows.contains(window))
        return;
    m_windows += window;
    window->installEventFilter(this);
}

void WindowRegistry::addHome(QWidget* window)
{
    m_home = window;
    m_windows.removeAll(QPointer<QWidget>(window));
    m_windows.prepend(window);
}

QList<QWidget*> WindowRegistry::windows() const
{
    QList<QWidget*> alive;
    for (const QPointer<QWidget>& window : m_windows) {
        if (window)
            alive += window;
    }
    return alive;
}

QWidget* WindowRegistry::windowShowing(const QObject* subject) const
{
    const QList<QWidget*> all = windows();
    const auto found = std::find_if(all.begin(), all.end(), [subject](const QWidget* window) {
        return window->property(subjectProperty).value<quintptr>() == reinterpret_cast<quintptr>(subject);
    });
    return found == all.end() ? nullptr : *found;
}

void WindowRegistry::bringToFront(QWidget* window)
{
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

void WindowRegistry::fill(QMenu* menu)
{
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { listIn(menu); });
    listIn(menu);
}

void WindowRegistry::listIn(QMenu* menu) const
{
    const QList<QAction*> entries = menu->actions();
    for (QAction* entry : entries) {
        if (entry->property(listedMark).toBool())
            delete entry;
    }
    const QWidget* active = QApplication::activeWindow();
    for (QWidget* window : windows()) {
        QAction* entry = menu->addAction(entryText(*window));
        entry->setProperty(listedMark, true);
        entry->setCheckable(true);
        entry->setChecked(window == active);
        connect(entry, &QAction::triggered, window, [window] { bringToFront(window); });
    }
}

bool WindowRegistry::eventFilter(QObject* watched, QEvent* event)
{
    // A window that closes is hidden; one that refuses to close is not.
    if (event->type() == QEvent::Hide && !event->spontaneous())
        m_windows.removeIf([watched](const QPointer<QWidget>& window) { return window.data() == watched; });
    if (event->type() == QEvent::Show && !event->spontaneous())
        add(static_cast<QWidget*>(watched));
    return QObject::eventFilter(watched, event);
}

} // namespace luma
