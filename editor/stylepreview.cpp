// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylepreview.h"

#include "editor/stylerules.h"
#include "web/scriptcall.h"
#include "web/viewcontroller.h"

namespace luma {

void previewStyle(ViewController& rendering, const StyleRule& rule, const QString& name, const QString& value)
{
    QStringList steps;
    for (const int step : rule.source.path)
        steps.append(QString::number(step));
    rendering.evaluate(QStringLiteral("previewStyle(%1, [%2], '%3', '%4')")
                           .arg(QString::number(rule.number), steps.join(u','), quotedForScript(name),
                                quotedForScript(value)));
}

void endStylePreview(ViewController& rendering)
{
    rendering.evaluate(QStringLiteral("endStylePreview()"));
}

} // namespace luma
