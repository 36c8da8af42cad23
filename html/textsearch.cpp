// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/textsearch.h"

#include "html/characterdata.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "html/tagtraits.h"

#include <QCoreApplication>

#include <algorithm>
#include <functional>

namespace luma {

namespace {

struct QueryTexts
{
    Q_DECLARE_TR_FUNCTIONS(luma::TextQuery)
};

constexpr QChar unbreakable(0xa0);

// What an expression may try at one place (PCRE2, pcre2pattern, "Setting match limits"): enough for any that is of use.
constexpr QLatin1StringView matchLimit("(*LIMIT_MATCH=1000000)");

Error givenUp()
{
    return Error{
        QueryTexts::tr("The expression takes too long: it tries too much at one place.").toStdString()};
}

/// Where a character of a run comes from.
struct Place
{
    html::Node* node;
    std::size_t from; // bytes
    std::size_t to;
    qsizetype offset; // among the characters of the body
};

bool isAsciiBlank(QChar c)
{
    return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r' || c == u'\f';
}

std::size_t bytesOf(QChar c)
{
    if (c.isHighSurrogate())
        return 4;
    if (c.isLowSurrogate())
        return 0;
    return c.unicode() < 0x80 ? 1 : c.unicode() < 0x800 ? 2 : 3;
}

/// Elements that end a run of text, though some stand in a line.
bool endsRun(const html::Element& element)
{
    return html::isBlock(element) || html::isVoid(element) || html::isServerCode(element) ||
           html::isInvisible(element) || element.is("textarea") || element.is("select") ||
           element.is("iframe");
}

/// Walks through the runs of a page's text, each a block's or a line's.
class RunWalk final
{
public:
    using Take = std::function<void(const QString& run, const std::vector<Place>& places)>;
    /// Without the places it is faster.
    RunWalk(bool wantsPlaces, Take take) : m_take(std::move(take)), m_wantsPlaces(wantsPlaces) {}

    void through(const html::Document& page)
    {
        if (page.body())
            in(*page.body());
    }

private:
    void in(const html::Node& body)
    {
        for (const html::Node* node = &body; node;) {
            const bool goesDown = enter(*node);
            const html::ParentNode* const parent = node->asParent();
            if (goesDown && parent && parent->firstChild()) {
                node = parent->firstChild();
                continue;
            }
            leave(*node);
            while (node != &body && !node->next()) {
                node = node->parent();
                leave(*node);
            }
            node = node == &body ? nullptr : node->next();
        }
        flush();
    }

    /// False for what has no text of the page.
    bool enter(const html::Node& node)
    {
        if (const std::string* const data = html::textOf(node)) {
            addText(const_cast<html::Node&>(node), *data);
            return false;
        }
        const html::Element* const element = node.asElement();
        if (!element)
            return false;
        if (endsRun(*element))
            flush();
        return !element->is("template");
    }

    void leave(const html::Node& node)
    {
        if (node.asElement() && endsRun(*node.asElement()))
            flush();
    }

    void addText(html::Node& node, const std::string& data)
    {
        const html::Element* const parent = node.parent()->asElement();
        const bool isShown = !parent || !(html::hasRawText(*parent) || html::isInvisible(*parent));
        const bool keepsBlanks = isInPre(node);
        const QString characters = QString::fromStdString(data);
        std::size_t at = 0;
        for (const QChar c : characters) {
            const std::size_t length = bytesOf(c);
            if (isShown)
                addCharacter(c, {&node, c.isLowSurrogate() ? at - 4 : at, at + length, m_offset},
                             keepsBlanks);
            at += length;
            ++m_offset;
        }
    }

    void addCharacter(QChar c, const Place& place, bool keepsBlanks)
    {
        const bool isBlank = isAsciiBlank(c) && !keepsBlanks;
        if (!isBlank || (!m_text.isEmpty() && m_text.back() != u' ')) {
            m_text += isBlank ? u' ' : c;
            if (m_wantsPlaces)
                m_places.push_back(place);
        } else if (!m_places.empty() && m_places.back().node == place.node) {
            m_places.back().to = place.to;
        }
    }

    static bool isInPre(const html::Node& node)
    {
        const html::Node* above = node.parent();
        while (above && !(above->asElement() && html::swallowsFirstLineFeed(*above->asElement())))
            above = above->parent();
        return above;
    }

    void flush()
    {
        if (!m_text.isEmpty())
            m_take(m_text, m_places);
        m_text.clear();
        m_places.clear();
    }

    Take m_take;
    bool m_wantsPlaces;
    QString m_text; // of the run
    std::vector<Place> m_places;
    qsizetype m_offset = 0;
};

TextMatch placed(const QRegularExpressionMatch& match, const QString& run, const std::vector<Place>& places)
{
    TextMatch found;
    found.text = match.captured();
    found.match = match;
    found.run = run;
    for (qsizetype at = match.capturedStart(); at < match.capturedEnd(); ++at) {
        const Place& place = places[static_cast<std::size_t>(at)];
        if (found.pieces.empty() || found.pieces.back().node != place.node)
            found.pieces.push_back({place.node, place.from, place.to});
        else
            found.pieces.back().to = place.to;
        found.end = place.offset + 1;
    }
    found.start = places[static_cast<std::size_t>(match.capturedStart())].offset;
    return found;
}

} // namespace

Result<QRegularExpression> TextQuery::expression() const
{
    QString pattern = text;
    if (!isExpression) {
        pattern = QRegularExpression::escape(text);
        pattern.replace(QLatin1String("\\ "), QStringLiteral("[ %1]").arg(unbreakable));
    }
    if (wholeWords)
        pattern = QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(pattern);
    QRegularExpression::PatternOptions options =
        QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::MultilineOption;
    if (!matchesCase)
        options |= QRegularExpression::CaseInsensitiveOption;
    // Its own, so that the place of a fault counts in it, and that its parentheses are closed.
    const QRegularExpression own(isExpression ? text : QString(), options);
    if (!own.isValid())
        return Error{QueryTexts::tr("Not a regular expression, at character %1: %2")
                         .arg(own.patternErrorOffset() + 1)
                         .arg(own.errorString())
                         .toStdString()};
    QRegularExpression compiled(matchLimit + pattern, options);
    if (!compiled.isValid())
        return Error{
            QueryTexts::tr("Not a regular expression: %1").arg(compiled.errorString()).toStdString()};
    return compiled;
}

Result<std::vector<QRegularExpressionMatch>> matchesInText(const QString& text,
                                                           const QRegularExpression& expression)
{
    std::vector<QRegularExpressionMatch> found;
    auto matches = expression.globalMatch(text);
    bool isAtEnd = false; // behind a match of nothing there, the iterator is not valid either
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        isAtEnd = match.capturedStart() == text.size();
        if (match.capturedLength() > 0)
            found.push_back(match);
    }
    if (!matches.isValid() && !isAtEnd)
        return givenUp();
    return found;
}

std::vector<QString> textRuns(const html::Document& page)
{
    std::vector<QString> runs;
    RunWalk(false, [&runs](const QString& run, const std::vector<Place>&) {
        runs.push_back(run);
    }).through(page);
    return runs;
}

Result<RunMatches> matchesInRuns(const std::vector<QString>& runs, const QRegularExpression& expression,
                                 const StillWanted& stillWanted)
{
    RunMatches matches(runs.size());
    for (std::size_t i = 0; i < runs.size() && isWanted(stillWanted); ++i) {
        auto found = matchesInText(runs[i], expression);
        if (!found)
            return found.error();
        matches[i] = *std::move(found);
    }
    return matches;
}

std::vector<TextMatch> placedMatches(const html::Document& page, const RunMatches& matches)
{
    std::vector<TextMatch> all;
    const auto isNone = [](const auto& ofRun) { return ofRun.empty(); };
    if (std::all_of(matches.begin(), matches.end(), isNone))
        return all;
    std::size_t at = 0;
    RunWalk(true, [&](const QString& run, const std::vector<Place>& places) {
        for (const QRegularExpressionMatch& match : matches[at])
            all.push_back(placed(match, run, places));
        ++at;
    }).through(page);
    return all;
}

Result<std::vector<TextMatch>> matchesIn(const html::Document& page, const QRegularExpression& expression)
{
    const auto matches = matchesInRuns(textRuns(page), expression, {});
    if (!matches)
        return matches.error();
    return placedMatches(page, *matches);
}

QString replacementFor(const QStringList& captured, const QString& replacement, bool isExpression)
{
    if (!isExpression)
        return replacement;
    QString result;
    for (qsizetype at = 0; at < replacement.size(); ++at) {
        const QChar c = replacement.at(at);
        const QChar next = at + 1 < replacement.size() ? replacement.at(at + 1) : QChar();
        if ((c == u'$' || c == u'\\') && next >= u'0' && next <= u'9') {
            result += captured.value(next.digitValue());
            ++at;
        } else {
            result += c;
            at += (c == u'$' || c == u'\\') && next == c ? 1 : 0;
        }
    }
    return result;
}

NewTexts textsAfter(const std::vector<TextMatch>& matches, const QString& replacement, bool isExpression)
{
    NewTexts texts;
    std::size_t done = 0; // bytes of the last node that are in its new text
    const auto finish = [&texts, &done] {
        if (!texts.empty())
            texts.back().second += html::textOf(*texts.back().first)->substr(done);
    };
    for (const TextMatch& match : matches) {
        std::string wanted =
            replacementFor(match.match.capturedTexts(), replacement, isExpression).toStdString();
        for (const TextMatch::Piece& piece : match.pieces) {
            if (texts.empty() || texts.back().first != piece.node) {
                finish();
                texts.emplace_back(piece.node, std::string());
                done = 0;
            }
            texts.back().second += html::textOf(*piece.node)->substr(done, piece.from - done) + wanted;
            wanted.clear();
            done = piece.to;
        }
    }
    finish();
    return texts;
}

} // namespace luma
