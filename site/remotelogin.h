// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"

#include <QObject>

#include <functional>
#include <memory>

namespace luma {

/// Checks whether key-based ssh login to a site's destination works, and sets it up. Both run in the
/// background and answer with a signal on the main thread. Of several checks only the newest answers, and only
/// one set-up runs at a time. Main thread only.
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

    /// Why rsync is not used and what to do about it, in a sentence or two: for an answer of the check, or of
    /// checked().
    [[nodiscard]] static QString advice(const QString& answer);

    void check();
    /// Does nothing while a set-up runs.
    void setUp();
    [[nodiscard]] bool isSettingUp() const { return m_isSettingUp; }

signals:
    /// `answer` is the check's, or one of our own. Also emitted with false, after a check was started, when the
    /// protocol, server, user or port changes: what a check found counts for the former ones only.
    void checked(bool works, const QString& answer);
    /// `message` is empty on success.
    void setUpEnded(const QString& message);

private:
    void forgetCheck(const QString& changedKey);

    std::shared_ptr<ObservedDictionary> m_destination;
    Calls m_calls;
    int m_newestCheck = 0;
    bool m_isSettingUp = false;
};

} // namespace luma
