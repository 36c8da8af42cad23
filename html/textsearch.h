// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "html/document.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace luma {

/// What the user looks for.
struct TextQuery
{
    QString text;
    bool isExpression = false; ///< a regular expression, of PCRE's syntax
    bool matchesCase = false;
    bool wholeWords = false;

    /// The query as an expression; the error is a sentence that says where a broken one is broken. A blank of a text also
    /// finds a no-break space. An expression that would try too much at a place is given up there: its searches fail.
    [[nodiscard]] Result<QRegularExpression> expression() const;
};

/// A place of a page's text, as it is shown, that a query finds. It is valid until the page changes.
struct TextMatch
{
    /// A part of it in one text node, in bytes; the blanks of the source between two words belong to it.
    struct Piece
    {
        html::Node* node = nullptr;
        std::size_t from = 0;
        std::size_t to = 0;
    };
    std::vector<Piece> pieces; ///< at least one; several where it reaches across inline elements
    QString text;
    QRegularExpressionMatch match;
    QString run; ///< the text around it, in which the match counts: that of a block or of a line
    /// Where it is among all characters (UTF-16) of the text nodes in the body, without those in templates.
    qsizetype start = 0;
    qsizetype end = 0;
};

/// All matches in the body, in document order. A match never reaches across blocks, line breaks or what is not text. Error: the
/// expression was given up.
Result<std::vector<TextMatch>> matchesIn(const html::Document& page, const QRegularExpression& expression);

/// The same in three steps, the middle one, which may take long, for any thread: the texts that are searched, each a block's or a
/// line's; the matches in each of them, not in all if they are no longer wanted; and where these are in the page, which must not
/// have changed since.
std::vector<QString> textRuns(const html::Document& page);
using RunMatches = std::vector<std::vector<QRegularExpressionMatch>>;
Result<RunMatches> matchesInRuns(const std::vector<QString>& runs, const QRegularExpression& expression,
                                 const StillWanted& stillWanted);
std::vector<TextMatch> placedMatches(const html::Document& page, const RunMatches& matches);

/// The same for a text, such as a page's source. Matches of nothing are left out.
Result<std::vector<QRegularExpressionMatch>> matchesInText(const QString& text,
                                                           const QRegularExpression& expression);

/// What a match, which caught these texts, is replaced with: in the replacement for an expression, $0 to $9 or \\0 to \\9 are its groups, $$ and \\\\ are
/// the characters.
QString replacementFor(const QStringList& captured, const QString& replacement, bool isExpression);

/// The new texts of the nodes in which these matches, in document order, are replaced. What takes the place of a match stands
/// where it began, and the elements around its parts stay.
using NewTexts = std::vector<std::pair<html::Node*, std::string>>;
NewTexts textsAfter(const std::vector<TextMatch>& matches, const QString& replacement, bool isExpression);

} // namespace luma
