// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/csssyntax.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

class CssTexts final
{
    Q_DECLARE_TR_FUNCTIONS(luma::CssTexts)
};

constexpr qsizetype longestQuote = 40; // characters of the sheet in a reason

/// Reads a sheet, or the beginning of one, and notes what is open at its end and what is damaged.
class CssWalk final
{
public:
    struct Bracket
    {
        QChar closing;
        qsizetype at = 0;
        bool groupsRules = false;
    };

    explicit CssWalk(const QString& text) : m_text(text)
    {
        while (m_at < m_text.size())
            step();
    }

    [[nodiscard]] const std::vector<Bracket>& open() const { return m_open; }
    [[nodiscard]] bool endsInside() const { return m_endsInside; }
    /// What has been written of the rule or declaration at the end.
    [[nodiscard]] QString statement() const { return m_text.mid(m_statement); }

    [[nodiscard]] std::vector<CssFlaw> flaws() &&
    {
        for (const Bracket& each : m_open)
            addUnclosed(each);
        std::stable_sort(m_flaws.begin(), m_flaws.end(),
                         [](const CssFlaw& a, const CssFlaw& b) { return a.at < b.at; });
        return std::move(m_flaws);
    }

private:
    void step()
    {
        const QChar c = m_text[m_at];
        if (c == u'/' && m_text.mid(m_at, 2) == QLatin1String("/*"))
            skipComment();
        else if (c == u'"' || c == u'\'')
            skipText();
        else if (c == u'\\')
            m_at = std::min(m_at + 2, m_text.size());
        else if (c == u'(' || c == u'[' || c == u'{')
            openBracket(c);
        else if (c == u')' || c == u']' || c == u'}')
            closeBracket(c);
        else if (c == u';' && (m_open.empty() || m_open.back().closing == u'}'))
            endStatement();
        else
            ++m_at;
    }

    void skipComment()
    {
        const qsizetype end = m_text.indexOf(QLatin1String("*/"), m_at + 2);
        if (end < 0)
            m_flaws.push_back({m_at, CssTexts::tr("This comment is not closed.")});
        m_endsInside = end < 0;
        // A comment in front of a rule or declaration is no part of it.
        const bool isFirst = QStringView(m_text).sliced(m_statement, m_at - m_statement).trimmed().isEmpty();
        m_at = end < 0 ? m_text.size() : end + 2;
        if (isFirst)
            m_statement = m_at;
    }

    // A line end closes a damaged one (CSS Syntax 3, 4.3.5).
    void skipText()
    {
        const qsizetype begin = m_at;
        const QChar quote = m_text[m_at++];
        while (m_at < m_text.size() && m_text[m_at] != quote && m_text[m_at] != u'\n')
            m_at += m_text[m_at] == u'\\' ? 2 : 1;
        m_at = std::min(m_at, m_text.size());
        m_endsInside = m_at == m_text.size();
        if (m_endsInside || m_text[m_at] == u'\n')
            m_flaws.push_back({begin, CssTexts::tr("This text is not closed.")});
        else
            ++m_at;
    }

    void openBracket(QChar opening)
    {
        static const QRegularExpression grouping(
            QStringLiteral("^\\s*@(media|supports|layer|scope|container|starting-style|[-\\w]*keyframes)\\b"),
            QRegularExpression::CaseInsensitiveOption);
        const qsizetype begin = m_at++;
        if (opening == u'{') {
            m_open.push_back(
                {u'}', begin, grouping.match(m_text.mid(m_statement, begin - m_statement)).hasMatch()});
            m_statement = m_at;
            return;
        }
        m_open.push_back({opening == u'(' ? u')' : u']', begin});
        if (opening == u'(' && begin >= 3 &&
            m_text.mid(begin - 3, 3).compare(QLatin1String("url"), Qt::CaseInsensitive) == 0)
            skipBareAddress();
    }

    // Quotes and marks of comments have no meaning in there (CSS Syntax 3, 4.3.6).
    void skipBareAddress()
    {
        while (m_at < m_text.size() && m_text[m_at].isSpace())
            ++m_at;
        if (m_at < m_text.size() && (m_text[m_at] == u'"' || m_text[m_at] == u'\''))
            return;
        while (m_at < m_text.size() && m_text[m_at] != u')' && m_text[m_at] != u'\n')
            ++m_at;
    }

    void closeBracket(QChar closing)
    {
        if (closing == u'}')
            checkStatement();
        const bool isOpen = std::any_of(m_open.begin(), m_open.end(),
                                        [closing](const Bracket& each) { return each.closing == closing; });
        // Only a brace ends what is open inside it.
        if (!isOpen || (closing != u'}' && m_open.back().closing != closing)) {
            m_flaws.push_back({m_at, CssTexts::tr("“%1” closes nothing.").arg(closing)});
        } else {
            while (m_open.back().closing != closing) {
                addUnclosed(m_open.back());
                m_open.pop_back();
            }
            m_open.pop_back();
        }
        ++m_at;
        if (closing == u'}')
            m_statement = m_at;
    }

    void endStatement()
    {
        checkStatement();
        m_statement = ++m_at;
    }

    void checkStatement()
    {
        const bool isInRule = !m_open.empty() && m_open.back().closing == u'}' && !m_open.back().groupsRules;
        const QString text = m_text.mid(m_statement, m_at - m_statement).trimmed();
        if (isInRule && !text.isEmpty() && !text.contains(u':') && !text.startsWith(u'@')) {
            const qsizetype begin = m_text.indexOf(text, m_statement);
            m_flaws.push_back(
                {begin,
                 CssTexts::tr("“%1” is no declaration: it has no colon.").arg(text.left(longestQuote))});
        }
    }

    void addUnclosed(const Bracket& bracket)
    {
        m_flaws.push_back({bracket.at, CssTexts::tr("This “%1” is not closed.").arg(m_text[bracket.at])});
    }

    const QString& m_text;
    qsizetype m_at = 0;
    qsizetype m_statement = 0;
    bool m_endsInside = false; // a comment or text
    std::vector<Bracket> m_open;
    std::vector<CssFlaw> m_flaws;
};

QString lastMatch(const QRegularExpression& expression, const QString& text)
{
    return expression.match(text).captured();
}

} // namespace

CssPlace cssPlaceBehind(const QString& text)
{
    static const QRegularExpression name(QStringLiteral("[-\\w]*$"));
    static const QRegularExpression inSelector(QStringLiteral("(?:[.#]|::?)?[-\\w]*$"));
    static const QRegularExpression atWord(QStringLiteral("^@[-\\w]*$"));
    const CssWalk walk(text);
    if (walk.endsInside())
        return {};
    const QString statement = walk.statement().trimmed();
    const auto brace = std::find_if(walk.open().rbegin(), walk.open().rend(),
                                    [](const CssWalk::Bracket& each) { return each.closing == u'}'; });
    if (brace == walk.open().rend() || brace->groupsRules) {
        if (statement.startsWith(u'@'))
            return {atWord.match(statement).hasMatch() && walk.statement().endsWith(statement)
                        ? CssPlace::Kind::AtRule
                        : CssPlace::Kind::Nothing,
                    {},
                    statement};
        // In brackets there may be an attribute, or another selector.
        const bool inBrackets = !walk.open().empty() && walk.open().back().closing == u']';
        return {
            inBrackets ? CssPlace::Kind::Nothing : CssPlace::Kind::Selector, {}, lastMatch(inSelector, text)};
    }
    const qsizetype colon = statement.indexOf(u':');
    if (colon < 0)
        return {CssPlace::Kind::Property, {}, lastMatch(name, text)};
    // A semicolon may still be missing in front of it.
    return {CssPlace::Kind::Value, lastMatch(name, statement.left(colon).trimmed()).toLower(),
            lastMatch(name, text)};
}

std::vector<CssFlaw> cssFlaws(const QString& sheet)
{
    return CssWalk(sheet).flaws();
}

} // namespace luma
