// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/remotelogin.h"

#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/endpoint.h"

#include <utility>

namespace luma {

RemoteLogin::RemoteLogin(std::shared_ptr<ObservedDictionary> destination, Calls calls, QObject* parent)
    : QObject(parent), m_destination(std::move(destination)), m_calls(std::move(calls))
{
    connect(m_destination.get(), &ObservedDictionary::changed, this, &RemoteLogin::forgetCheck);
}

RemoteLogin::~RemoteLogin() = default;

QString RemoteLogin::login(const ObservedDictionary& destination)
{
    const QString user = destination.string(endpoint::user);
    const QString server = destination.string(endpoint::server);
    return user.isEmpty() || server.isEmpty() ? QString() : user + QLatin1Char('@') + server;
}

QString RemoteLogin::port(const ObservedDictionary& destination)
{
    return destination.string(endpoint::sshPortNo, QStringLiteral("22"));
}

void RemoteLogin::check()
{
    const int number = ++m_newestCheck;
    const QPointer<RemoteLogin> guard(this);
    start(std::make_shared<WorkItem>(),
          [guard, number, call = m_calls.checkConnection, login = login(*m_destination),
           port = port(*m_destination)](const WorkItem&) {
              const bool works = !login.isEmpty() && call(login, port).isEmpty();
              onMain(guard, [&](RemoteLogin& alive) {
                  if (number == alive.m_newestCheck)
                      emit alive.checked(works);
              });
          });
}

void RemoteLogin::forgetCheck(const QString& changedKey)
{
    const bool counts = changedKey == endpoint::protocol || changedKey == endpoint::server ||
                        changedKey == endpoint::user || changedKey == endpoint::sshPortNo;
    if (!counts || m_newestCheck == 0)
        return;
    ++m_newestCheck;
    emit checked(false);
}

void RemoteLogin::setUp()
{
    if (std::exchange(m_isSettingUp, true))
        return;
    const QPointer<RemoteLogin> guard(this);
    start(std::make_shared<WorkItem>(),
          [guard, call = m_calls.setUp, login = login(*m_destination), port = port(*m_destination),
           password = m_destination->string(endpoint::password)](const WorkItem&) {
              const QString message = call(login, port, password);
              onMain(guard, [&](RemoteLogin& alive) {
                  alive.m_isSettingUp = false;
                  emit alive.setUpEnded(message);
              });
          });
}

} // namespace luma
