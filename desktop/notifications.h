// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace luma {

/// Tells every program of the session that listens. A notification is a signal on the D-Bus session bus
/// (interface org.luma.Notification, member posted) whose two string arguments are its name and its object.
/// False when there is no session bus. Any thread.
bool postNotification(const QString& name, const QString& object);

/// Hears of the notifications with one name and one object for as long as it lives. Main thread only.
class NotificationObserver final : public QObject
{
    Q_OBJECT

public:
    NotificationObserver(const QString& name, const QString& object, QObject* parent = nullptr);
    ~NotificationObserver() override;

signals:
    void posted();

private slots:
    void receive(const QString& name, const QString& object);

private:
    QString m_name;
    QString m_object;
};

} // namespace luma
