// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/codehighlighter.h"

#include <QEvent>
#include <QPalette>
#include <QPlainTextEdit>
#include <QSignalBlocker>

#include <optional>

namespace luma {

namespace {

constexpr qsizetype longestLine = 10'000; // longer ones, usually generated, stay plain
constexpr QColor commentColour(0x6a, 0x73, 0x7d);
constexpr QColor nameColour(0x0b, 0x5c, 0xad);
constexpr QColor stringColour(0x9a, 0x3b, 0x12);
constexpr QColor numberColour(0x1a, 0x7f, 0x37);
constexpr QColor wordColour(0x82, 0x30, 0xa8);

// The colours are made for a light background; on a dark one they are lightened by as much.
QColor suited(const QColor& colour, const QPalette& palette)
{
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return dark ? QColor::fromHsl(colour.hslHue(), colour.hslSaturation(), 255 - colour.lightness() / 2 - 20)
                : colour;
}

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
        rule.format.setForeground(suited(rule.lightColour, m_field->palette()));
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
    addRule(R"~(<\?)~", wordColour, R"~(\?>)~");
    addRule("<%", wordColour, "%>");
    addRule(R"~(\{\{)~", wordColour, R"~(\}\})~");
    addRule(R"~(\{%)~", wordColour, R"~(%\})~");
    addRule("<!--", commentColour, "-->");
    addRule("<![^>]*>", commentColour);
    addRule(R"~(</?[A-Za-z][^\s>/]*|/?>)~", nameColour);
    addRule(R"~("[^"]*"|'[^']*')~", stringColour);
    addRule(R"~(&#?\w+;)~", numberColour);
}

void CodeHighlighter::addCssRules()
{
    addRule(R"~(/\*)~", commentColour, R"~(\*/)~");
    addRule(R"~("(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])*')~", stringColour);
    addRule(R"~(@[-\w]+)~", wordColour);
    addRule(R"~([-\w]+(?=\s*:[^{]*(?:;|$)))~", nameColour);
    addRule(R"~(#[0-9a-fA-F]{3,8}\b|(?<![-\w])[+-]?\d*\.?\d+(?:%|[a-z]+)?)~", numberColour);
}

void CodeHighlighter::addScriptRules()
{
    addRule(R"~(/\*)~", commentColour, R"~(\*/)~");
    addRule("//.*", commentColour);
    addRule(R"~("(?:\\.|[^"\\])*"|'(?:\\.|[^'\\])*')~", stringColour);
    addRule("`", stringColour, "`");
    addRule(
        R"~(\b(?:const|let|var|function|return|if|else|for|while|of|in|new|class|true|false|null|typeof)\b)~",
        wordColour);
    addRule(R"~(\b\d+(?:\.\d+)?\b)~", numberColour);
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
