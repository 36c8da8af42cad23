// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

namespace luma {

/// What may be written at a place of a style sheet.
struct CssPlace
{
    enum class Kind { Nothing, Selector, AtRule, Property, Value };

    Kind kind = Kind::Nothing;
    QString property; ///< whose value it is
    QString
        word; ///< what stands there already, up to the place, with its mark: "bord", ".lea", "--gap", "@me"
};

/// Judges the text in front of the place alone. In comments and strings there is nothing to write. Any thread.
CssPlace cssPlaceBehind(const QString& text);

/// Where the text of a sheet is damaged, so that a browser may read the rest of it in another way.
struct CssFlaw
{
    qsizetype at = 0; ///< UTF-16
    QString reason;   ///< a sentence
};

/// What is not closed, what is closed and was not open, and what is no declaration, in the text's order. Any thread.
std::vector<CssFlaw> cssFlaws(const QString& sheet);

} // namespace luma
