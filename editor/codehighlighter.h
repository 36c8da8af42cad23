#pragma once

#include <QRegularExpression>
#include <QSyntaxHighlighter>

#include <vector>

namespace luma {

/// Colours HTML, CSS or script text, in colours that suit the palette, light or dark. It looks at one line at
/// a time and carries over what stays open: a comment, a tag, a declaration block.
class CodeHighlighter final : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    enum class Language { Html, Css, Script };

    CodeHighlighter(Language language, QTextDocument* document);

protected:
    void highlightBlock(const QString& text) override;

private:
    struct Rule
    {
        QRegularExpression begins;
        QRegularExpression ends; // of what may go over line ends; empty for what does not
        QTextCharFormat format;
    };

    qsizetype colour(const Rule& rule, const QString& text, qsizetype from, qsizetype to);
    void addHtmlRules();
    void addCssRules();
    void addScriptRules();
    void addRule(const char* pattern, QColor lightColour, const char* endPattern = nullptr);

    std::vector<Rule> m_rules;
};

} // namespace luma
