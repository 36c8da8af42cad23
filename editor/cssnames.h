// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

class QObject;

namespace luma {

class ViewController;

/// The class and ID names that a page's style sheets define, without "." and "#".
struct CssNames
{
    QStringList classes;
    QStringList ids;
};

/// Asks the rendering for the names and stores them in `names`, which must live as long as `context`. If the
/// rendering does not answer, `names` keeps the previous ones.
void loadCssNames(ViewController& rendering, QObject* context, CssNames& names);

} // namespace luma
