// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <memory>
#include <optional>
#include <string>

namespace luma {

/// The passwords that the desktop's secret service keeps for LUMA, each under an id of ours: the default
/// keyring of the service on the D-Bus session bus. Calls block as long as the service takes; on any thread, but
/// one at a time, save for cancel().
/// Without a service, or without a default keyring, they fail. No error text contains a secret.
class SecretStore final
{
public:
    enum class WhenLocked {
        Fail,
        Ask ///< the desktop asks the user to unlock the keyring, and the call waits for that
    };

    SecretStore();
    ~SecretStore();

    /// Stores `secret` under `id` in place of an earlier one, and reads it back. `label` is what the desktop's
    /// password manager shows. UTF-8. A locked keyring is an error; the user is never asked.
    Result<void> store(const std::string& id, const std::string& label, const std::string& secret) const;

    /// The secret under `id`; none if there is none. A keyring that stays locked is an error.
    [[nodiscard]] Result<std::optional<std::string>> load(const std::string& id, WhenLocked whenLocked) const;

    /// Removes the secret under `id`; one in a locked keyring stays. Failures are ignored.
    void remove(const std::string& id) const;

    /// Makes running calls fail soon, and later ones at once.
    void cancel() const;

private:
    class Cancellable;
    std::unique_ptr<Cancellable> m_cancellable;
};

} // namespace luma
