// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace luma {

/// Sends a notification to every listening program of the session: a signal on the D-Bus session bus
/// (interface org.luma.Notification, member posted) with two string arguments, its name and its object. False
/// without a session bus. Any thread.
bool postNotification(const QString& name, const QString& object);

/// Emits posted() for each notification with the given name and object. Main thread only.
class NotificationObserver final : public QObject
{
    Q_OBJECT

public:
    NotificationObserver(QString name, QString object, QObject* parent = nullptr);
    ~NotificationObserver() override;

signals:
    void posted();

private:
    QString m_name;
    QString m_object;

private slots:
    void receive(const QString& name, const QString& object);
};

} // namespace luma
