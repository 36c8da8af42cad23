// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <utility>

namespace luma {

namespace {

const QString notificationPath = QStringLiteral("/org/luma/Notification");
const QString interfaceName = QStringLiteral("org.luma.Notification");
const QString memberName = QStringLiteral("posted");

} // namespace

bool postNotification(const QString& name, const QString& object)
{
    QDBusMessage signal = QDBusMessage::createSignal(notificationPath, interfaceName, memberName);
    signal << name << object;
    return QDBusConnection::sessionBus().send(signal);
}

NotificationObserver::NotificationObserver(QString name, QString object, QObject* parent)
    : QObject(parent), m_name(std::move(name)), m_object(std::move(object))
{
    QDBusConnection::sessionBus().connect({}, notificationPath, interfaceName, memberName, {m_name, m_object},
                                          {}, this, SLOT(receive(QString, QString)));
}

NotificationObserver::~NotificationObserver()
{
    QDBusConnection::sessionBus().disconnect({}, notificationPath, interfaceName, memberName,
                                             {m_name, m_object}, {}, this, SLOT(receive(QString, QString)));
}

void NotificationObserver::receive(const QString& name, const QString& object)
{
    if (name == m_name && object == m_object)
        emit posted();
}

} // namespace luma
