// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"

#include <QObject>

#include <functional>
#include <memory>

namespace luma {

/// Finds out whether key-based ssh login to a site's destination works, and sets it up. Both take their time,
/// so both run in the background; the answers are signals on the main thread. Asking again while an answer is
/// outstanding lets the newer one count. Main thread only.
class RemoteLogin final : public QObject
{
    Q_OBJECT

public:
    /// What does the work; each answers the empty string for success, else a message. Called on a background
    /// thread. Injected so that a test needs no server.
    struct Calls
    {
        std::function<QString(const QString& login, const QString& port)> checkConnection;
        std::function<QString(const QString& login, const QString& port, const QString& password)> setUp;
    };

    explicit RemoteLogin(std::shared_ptr<ObservedDictionary> destination, Calls calls,
                         QObject* parent = nullptr);
    ~RemoteLogin() override;

    /// user@server; empty when either is missing.
    [[nodiscard]] static QString login(const ObservedDictionary& destination);
    /// The ssh port; "22" when it is missing or not a string.
    [[nodiscard]] static QString port(const ObservedDictionary& destination);

    void check();
    void setUp();

signals:
    void checked(bool works);
    /// `message` is empty for success.
    void setUpEnded(const QString& message);

private:
    std::shared_ptr<ObservedDictionary> m_destination;
    Calls m_calls;
    int m_newestCheck = 0;
};

} // namespace luma
