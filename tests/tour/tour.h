// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/program.h"

#include <QStringList>

namespace luma {

/// Uses the real windows as a user would: shows the list of sites, opens two folders as a site and publishes
/// what has changed, and opens a page, with a screenshot of every window (tests/support/screenshot.h). Main thread;
/// runs event loops.
class Tour final
{
public:
    Tour(std::filesystem::path source, std::filesystem::path destination);

    /// 0 if every window appeared and the destination ends up with all files of the source.
    int run();

private:
    void showSites();
    void publish();
    void compareSides();
    void editPage();
    /// Waits until `isThere` is true; notes `what` as missing after a minute.
    bool await(const char* what, const std::function<bool()>& isThere);
    void picture(QWidget& widget, const QString& name);
    void miss(const QString& what);

    std::filesystem::path m_source;
    std::filesystem::path m_destination;
    Program m_program;
    QStringList m_missing;
};

} // namespace luma
