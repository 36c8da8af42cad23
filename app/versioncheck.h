// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commandrunner.h"

#include <QCoreApplication>
#include <QString>

#include <optional>

namespace luma {

/// Asks the maker's update server for the current version and phrases the answer. Versions are compared as
/// text: an older one on the server also counts as an update. Stateless.
class VersionCheck final
{
    Q_DECLARE_TR_FUNCTIONS(luma::VersionCheck)

public:
    enum class Offer { None, ProductPage };
    struct Notice
    {
        QString message;
        QString information;
        Offer offer = Offer::None;
    };

    /// The command line for the shell. The environment may name another server; an invalid host name is
    /// ignored.
    static QString command();

    /// None if the server did not answer (an empty answer).
    static std::optional<Notice> notice(const QString& answer, const QString& ownVersion);

    /// Blocks until the server has answered; run it in the background.
    static std::optional<Notice> run(const CommandRunner& shell, const QString& ownVersion);
};

} // namespace luma
