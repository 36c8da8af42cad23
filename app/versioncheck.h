// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandrunner.h"

#include <QString>

#include <optional>

namespace luma {

/// Asks the maker's update server for the current version and words the answer. The versions are compared as
/// texts: an older one on the server counts as an update too. No state; blocks until the server has answered,
/// so a window runs it in the background.
class VersionCheck final
{
public:
    enum class Offer { None, ProductPage };
    struct Notice
    {
        QString message;
        QString information;
        Offer offer = Offer::None;
    };

    /// The shell's command line. The environment may name another server; what cannot be a host's name is
    /// ignored.
    static QString command();

    /// Nothing when the server did not answer (an empty answer).
    static std::optional<Notice> notice(const QString& answer, const QString& ownVersion);

    static std::optional<Notice> run(const CommandRunner& shell, const QString& ownVersion);
};

} // namespace luma
