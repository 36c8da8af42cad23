// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/codehighlighter.h"

#include "web/codecolours.h"

#include <QEvent>
#include <QPalette>
#include <QPlainTextEdit>
#include <QSignalBlocker>

#include <optional>

namespace luma {

namespace {

constexpr qsizetype longestLine = 10'000; // longer ones, usually generated, stay plain
} // namespace

CodeHighlighter::CodeHighlighter(Language language, QPlainTextEdit* field)
    : QSyntaxHighlighter(field->document()), m_field(field)
{
    switch (language) {
    case Language::Html:
        addHtmlRules();
        break;
    case Language::Css:
        addCssRules();
        break;
    case Language::Script:
        addScriptRules();
        break;
    }
    suitPalette();
    field->installEventFilter(this);
}

bool CodeHighlighter::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_field && event->type() == QEvent::PaletteChange)
        suitPalette();
    return QSyntaxHighlighter::eventFilter(watched, event);
}

void CodeHighlighter::suitPalette()
{
    for (Rule& rule : m_rules)
        rule.format.setForeground(codecolours::suited(rule.lightColour, m_field->palette()));
    // Recolouring is no change of the text.
    const QSignalBlocker quiet(m_field);
    rehighlight();
    m_field->viewport()->update();
}

void CodeHighlighter::addRule(const char* pattern, QColor lightColour, const char* endPattern)
{
    m_rules.push_back({QRegularExpression(QString::fromLatin1(pattern)),
                       QRegularExpression(QString::fromLatin1(endPattern)),
                       lightColour,
                       {}});
}

void CodeHighlighter::addHtmlRules()
{
    addRule(R"~(<\?)~", codecolours::word, R"~(\?>)~");
    addRule("<%", codecolours::word, "%>");
    addRule(R"~(\{\{)~", codecolours::word, R"~(\}\})~");
    addRule(R"~(\{%)~", codecolours::word, R"~(%\})~");
    addRule("<!--", codecolours::comment, "-->");
    addRule("<![^>]*>", codecolours::comment);
    addRule(R"~(</?[A-Za-z][^\s>/]*|/?>)~", codecolours::name);
    addRule(R"~("[^"]*"|'[^']*')~", codecolours::string);
    addRule(R"~(&#?\w+;)~", codecolours::number);
}

void CodeHighlighter::addCssRules()
{
    addRule(R"~(/\*)~", codecolours::comment, R"~(\*/)~");
    addRule(R"~("(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])*')~", codecolours::string);
    addRule(R"~(@[-\w]+)~", codecolours::word);
    addRule(R"~([-\w]+(?=\s*:[^{]*(?:;|$)))~", codecolours::name);
    addRule(R"~(#[0-9a-fA-F]{3,8}\b|(?<![-\w])[+-]?\d*\.?\d+(?:%|[a-z]+)?)~", codecolours::number);
}

void CodeHighlighter::addScriptRules()
{
    addRule(R"~(/\*)~", codecolours::comment, R"~(\*/)~");
    addRule("//.*", codecolours::comment);
    addRule(R"~("(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])*')~", codecolours::string);
    addRule("`", codecolours::string, "`");
    addRule(
        R"~(\b(?:const|let|var|function|return|if|else|for|while|of|in|new|class|true|false|null|typeof)\b)~",
        codecolours::word);
    addRule(R"~(\b\d+(?:\.\d+)?\b)~", codecolours::number);
}

void CodeHighlighter::highlightBlock(const QString& text)
{
    setCurrentBlockState(0);
    if (text.size() > longestLine)
        return;
    qsizetype at = 0;
    if (const int open = previousBlockState(); open > 0)
        at = colour(m_rules[static_cast<std::size_t>(open - 1)], text, 0, 0);
    std::vector<std::optional<QRegularExpressionMatch>> next(m_rules.size());
    while (at < text.size()) {
        const Rule* rule = nullptr;
        QRegularExpressionMatch first;
        for (std::size_t i = 0; i < m_rules.size(); ++i) {
            if (!next[i] || (next[i]->hasMatch() && next[i]->capturedStart() < at))
                next[i] = m_rules[i].begins.match(text, at);
            if (next[i]->hasMatch() && (!rule || next[i]->capturedStart() < first.capturedStart())) {
                rule = &m_rules[i];
                first = *next[i];
            }
        }
        if (!rule)
            return;
        at = colour(*rule, text, first.capturedStart(), first.capturedEnd());
    }
}

qsizetype CodeHighlighter::colour(const Rule& rule, const QString& text, qsizetype from, qsizetype to)
{
    if (!rule.ends.pattern().isEmpty()) {
        const auto end = rule.ends.match(text, to);
        to = end.hasMatch() ? end.capturedEnd() : text.size();
        if (!end.hasMatch())
            setCurrentBlockState(static_cast<int>(&rule - m_rules.data()) + 1);
    }
    setFormat(static_cast<int>(from), static_cast<int>(to - from), rule.format);
    return to;
}

} // namespace luma
