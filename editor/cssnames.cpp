// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/cssnames.h"

#include "web/scriptcall.h"
#include "web/viewcontroller.h"

#include <QPointer>

namespace luma {

CssNames cssNamesOf(ViewController& rendering, CssNames before)
{
    const QPointer<ViewController> alive = &rendering;
    for (const auto& [script, names] : {std::pair("findAllDotClassNamesFromCSS()", &before.classes),
                                        std::pair("findAllIDNamesFromCSS()", &before.ids)}) {
        if (!alive)
            break;
        const QVariant answer = rendering.evaluateAndWait(QLatin1String(script));
        *names = ScriptCall::strings(answer).value_or(*names);
    }
    return before;
}

} // namespace luma
