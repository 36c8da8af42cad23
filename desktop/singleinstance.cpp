// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/singleinstance.h"

#include "base/usertext.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>

namespace luma {

namespace {

const QString serviceName = QStringLiteral("org.luma.Application");
const QString applicationPath = QStringLiteral("/org/luma/Application");

} // namespace

SingleInstance::SingleInstance(Opener opener, QObject* parent) : QObject(parent), m_opener(std::move(opener))
{
    qDBusRegisterMetaType<QList<QByteArray>>();
}

SingleInstance::~SingleInstance()
{
    // Earlier than the object, so that no start finds the name without it.
    if (m_isRegistered)
        QDBusConnection::sessionBus().interface()->unregisterService(serviceName);
}

Result<SingleInstance::Start> SingleInstance::begin(const QList<QByteArray>& arguments)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // Before the name is taken, so that a call that arrives at once finds the object.
    if (!bus.isConnected() ||
        !bus.registerObject(applicationPath, this, QDBusConnection::ExportScriptableSlots))
        return Start::First;
    QDBusMessage call =
        QDBusMessage::createMethodCall(serviceName, applicationPath, serviceName, QStringLiteral("open"));
    call << QVariant::fromValue(arguments);
    for (QString asked;;) {
        const auto taken = bus.interface()->registerService(serviceName);
        m_isRegistered = taken.isValid() && taken.value() == QDBusConnectionInterface::ServiceRegistered;
        if (m_isRegistered || !taken.isValid())
            return Start::First;
        const QString owner = bus.interface()->serviceOwner(serviceName);
        if (!owner.isEmpty() && owner == asked)
            return Error{
                userText(QT_TRANSLATE_NOOP("luma::Engines", "LUMA is already running but does not answer"))};
        asked = owner;
        const QDBusReply<QByteArray> answer = bus.call(call);
        if (answer.isValid() && answer.value().isEmpty())
            return Start::HandedOver;
        if (answer.isValid())
            return Error{answer.value().toStdString()};
        // That process has just ended, or hangs.
    }
}

QByteArray SingleInstance::open(const QList<QByteArray>& arguments)
{
    const auto opened = m_opener(arguments);
    return opened ? QByteArray() : QByteArray::fromStdString(opened.error().text);
}

} // namespace luma
