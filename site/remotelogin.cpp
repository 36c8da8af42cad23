// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/remotelogin.h"

#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/endpoint.h"

#include <algorithm>
#include <array>
#include <utility>

namespace luma {

namespace {

constexpr QLatin1StringView noLogin{"no login"};
constexpr QLatin1StringView destinationChanged{"destination changed"};

struct Advice
{
    QLatin1StringView answer;
    const char* text;
};

constexpr std::array advices = {
    Advice{noLogin,
           QT_TRANSLATE_NOOP("luma::RemoteLogin",
                             "The destination has no server or no user. Enter both in its settings.")},
    Advice{destinationChanged,
           QT_TRANSLATE_NOOP("luma::RemoteLogin",
                             "The destination has changed since the last check. Choose Check "
                             "Connection in the menu Site.")},
    Advice{QLatin1StringView("fail - customlog needs setup"),
           QT_TRANSLATE_NOOP(
               "luma::RemoteLogin",
               "Login works, but the server's /usr/local/palisan/apache2/httpd.conf has no line that "
               "begins with LogFormat and ends with Tallyweb. Add one, or ask the server's operator "
               "to, and choose Check Connection in the menu Site.")},
    Advice{QLatin1StringView("fail - remote login is not yet set up"),
           QT_TRANSLATE_NOOP("luma::RemoteLogin",
                             "The server does not accept your key yet. Choose Set Up Remote Login.")},
    Advice{
        QLatin1StringView("fail - the account has no shell"),
        QT_TRANSLATE_NOOP("luma::RemoteLogin",
                          "The account is for sftp only, and rsync needs one that may run commands. Ask the "
                          "server's operator for it, or go on without: LUMA then copies file by file.")},
    Advice{QLatin1StringView("fail - timeout"),
           QT_TRANSLATE_NOOP(
               "luma::RemoteLogin",
               "The server did not answer within 15 seconds. Check server and SSH port, and choose "
               "Check Connection in the menu Site.")},
    Advice{
        QLatin1StringView("fail - unknown user, host and port combination"),
        QT_TRANSLATE_NOOP("luma::RemoteLogin",
                          "No ssh server answers there. Check server, user and SSH port in the destination's "
                          "settings.")},
    Advice{QLatin1StringView("fail - Tallyweb does not yet support the use of a passphrase"),
           QT_TRANSLATE_NOOP(
               "luma::RemoteLogin",
               "Your key ~/.ssh/id_rsa has a passphrase. Remove it with ssh-keygen -p, or load the key "
               "into ssh-agent before LUMA starts.")},
};

} // namespace

QString RemoteLogin::advice(const QString& answer)
{
    const auto* const found = std::find_if(advices.begin(), advices.end(),
                                           [&](const Advice& advice) { return answer == advice.answer; });
    return found == advices.end() ? answer : tr(found->text);
}

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
              const QString answer = login.isEmpty() ? QString(noLogin) : call(login, port).trimmed();
              onMain(guard, [&](RemoteLogin& alive) {
                  if (number == alive.m_newestCheck)
                      emit alive.checked(answer.isEmpty(), answer);
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
    emit checked(false, destinationChanged);
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
