// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/program.h"

#include <QStringList>

namespace luma {

/// A walk through the real windows, as a user would take it: shows the list of sites, opens two folders as a
/// site, publishes what has changed, and takes a picture of every window on the way. Main thread only; runs
/// event loops.
class Tour final
{
public:
    Tour(std::filesystem::path source, std::filesystem::path destination, QString pictureFolder);

    /// 0 when everything was there and the destination ended up with all that the source has.
    int run();

private:
    void showSites();
    void publish();
    void compareSides();
    /// Waits until `isThere` says so; notes `what` as missing when it never does.
    bool await(const char* what, const std::function<bool()>& isThere);
    void picture(QWidget& widget, const QString& name);
    void miss(const QString& what);

    std::filesystem::path m_source;
    std::filesystem::path m_destination;
    QString m_pictureFolder;
    Program m_program;
    QStringList m_missing;
};

} // namespace luma
