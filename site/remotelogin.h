// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"

#include <QObject>

#include <functional>
#include <memory>

namespace luma {

/// Checks whether key-based ssh login to a site's destination works, and sets it up. Both run in the
/// background and answer with a signal on the main thread. Of several checks only the newest answers. Main
/// thread only.
class RemoteLogin final : public QObject
{
    Q_OBJECT

public:
    /// The calls that do the work, on a background thread. Both return an empty string on success, else a
    /// message. Injected so that a test needs no server.
    struct Calls
    {
        std::function<QString(const QString& login, const QString& port)> checkConnection;
        std::function<QString(const QString& login, const QString& port, const QString& password)> setUp;
    };

    explicit RemoteLogin(std::shared_ptr<ObservedDictionary> destination, Calls calls,
                         QObject* parent = nullptr);
    ~RemoteLogin() override;

    /// user@server, or empty when either is missing.
    [[nodiscard]] static QString login(const ObservedDictionary& destination);
    /// The ssh port, or "22" when it is missing or not a string.
    [[nodiscard]] static QString port(const ObservedDictionary& destination);

    void check();
    void setUp();

signals:
    void checked(bool works);
    /// `message` is empty on success.
    void setUpEnded(const QString& message);

private:
    std::shared_ptr<ObservedDictionary> m_destination;
    Calls m_calls;
    int m_newestCheck = 0;
};

} // namespace luma
