// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

namespace luma {

struct StyleRule;
class ViewController;

/// Shows a declaration of the rule with another value, in what the engine has parsed alone, until another one is tried or
/// endStylePreview() is called. Neither page nor sheet changes. Main thread.
void previewStyle(ViewController& rendering, const StyleRule& rule, const QString& name,
                  const QString& value);
void endStylePreview(ViewController& rendering);

} // namespace luma
