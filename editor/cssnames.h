// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace luma {

class ViewController;

/// The class and ID names that a page's style sheets define, without "." and "#".
struct CssNames
{
    QStringList classes;
    QStringList ids;
};

/// Asks the rendering for them, and waits for its answers; null ones keep the names of before. Other events
/// run meanwhile, which may end the window.
CssNames cssNamesOf(ViewController& rendering, CssNames before);

} // namespace luma
