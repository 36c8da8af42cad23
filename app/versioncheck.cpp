// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/versioncheck.h"

#include "app/makerhosts.h"

#include <QRegularExpression>

namespace luma {

namespace {

// In characters; keeps a server's error page from filling the screen.
constexpr qsizetype longestAnswer = 200;

QString updateServer()
{
    static const QRegularExpression host(QStringLiteral("\\A[A-Za-z0-9.\\-\\[\\]:]+\\z"));
    const QString chosen = qEnvironmentVariable(maker::updateServerVariable);
    return host.match(chosen).hasMatch() ? chosen : QString(maker::updateServer);
}

} // namespace

QString VersionCheck::command()
{
    return QStringLiteral("/usr/bin/curl -s 'http://%1/software/version.php?item_number=4010'")
        .arg(updateServer());
}

std::optional<VersionCheck::Notice> VersionCheck::notice(const QString& answer, const QString& ownVersion)
{
    if (answer.isEmpty())
        return std::nullopt;
    if (!ownVersion.isEmpty() && answer == ownVersion)
        return Notice{tr("There are no newer versions available"),
                      tr("You are running the latest version of LUMA for Ventura.")};
    return Notice{tr("An update for Postwick is available"),
                  tr("\nThere is a newer version available (version %1).\n"
                     "Click OK to go to the LUMA for Ventura web site.\n")
                      .arg(answer.left(longestAnswer)),
                  Offer::ProductPage};
}

std::optional<VersionCheck::Notice> VersionCheck::run(const CommandRunner& shell, const QString& ownVersion)
{
    return notice(QString::fromStdString(shell({"-c", command().toStdString()})), ownVersion);
}

} // namespace luma
