// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QRegularExpression>
#include <QSyntaxHighlighter>

#include <vector>

class QPlainTextEdit;

namespace luma {

/// Colours HTML, CSS or script text to suit the field's palette, light or dark, and follows its changes. Works
/// line by line and carries over what is still open: a comment, a tag, a declaration block.
class CodeHighlighter final : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    enum class Language { Html, Css, Script };

    /// The field becomes the owner.
    CodeHighlighter(Language language, QPlainTextEdit* field);

protected:
    void highlightBlock(const QString& text) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Rule
    {
        QRegularExpression begins;
        QRegularExpression ends; // for rules that span lines; empty for others
        QColor lightColour;
        QTextCharFormat format;
    };

    qsizetype colour(const Rule& rule, const QString& text, qsizetype from, qsizetype to);
    void addHtmlRules();
    void addCssRules();
    void addScriptRules();
    void addRule(const char* pattern, QColor lightColour, const char* endPattern = nullptr);

    void suitPalette();

    QPlainTextEdit* m_field;
    std::vector<Rule> m_rules;
};

} // namespace luma
