// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace luma {

/// `text` as it may stand between single quotes in a script: a plain text stays letter for letter; quotes,
/// backslashes, line ends and all else that would end the literal (ECMA-262, String Literals) or a script
/// element ("</") is escaped, so that the script gets exactly `text` and nothing of it is run.
QString quotedForScript(const QString& text);

/// The call NAME('ARGUMENT').
QString scriptCall(const QString& function, const QString& argument);
/// The call NAME('FIRST', 'SECOND').
QString scriptCall(const QString& function, const QString& first, const QString& second);

} // namespace luma
