// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/cssnames.h"

#include "web/viewcontroller.h"

#include <utility>

namespace luma {

void loadCssNames(ViewController& rendering, QObject* context, CssNames& names)
{
    for (const auto& [script, list] : {std::pair("findAllDotClassNamesFromCSS()", &names.classes),
                                       std::pair("findAllIDNamesFromCSS()", &names.ids)})
        rendering.ask(QLatin1String(script), context, [kept = list](const QVariant& answer) {
            *kept = ScriptCall::strings(answer).value_or(*kept);
        });
}

} // namespace luma
