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

/// Asks the rendering for them and stores its answers in `names`, which lives as long as `context`. Where the
/// rendering does not answer, the previous names stay.
void loadCssNames(ViewController& rendering, QObject* context, CssNames& names);

} // namespace luma
