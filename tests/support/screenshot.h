// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace luma::test {

/// Saves what the widget shows as NAME.png in the folder that LUMA_SCREENSHOTS names; without it, nothing.
/// For whoever wants to look at the windows that a test walks through.
inline void screenshot(QWidget& widget, const char* name)
{
    if (qEnvironmentVariableIsSet("LUMA_SCREENSHOTS"))
        widget.grab().save(qEnvironmentVariable("LUMA_SCREENSHOTS") + u'/' + QLatin1StringView(name) +
                           QStringLiteral(".png"));
}

} // namespace luma::test
