// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPlainTextEdit>
#include <QSet>
#include <QString>
#include <QTextEdit>

class QHelpEvent;
class QPainter;

namespace luma {

/// What is wrong at a place of a field's text.
struct CodeProblem
{
    int from = 0; ///< UTF-16, up to `to`
    int to = 0;
    QString reason; ///< a sentence
};

/// A text field for code: fixed pitch, no wrapping, line numbers unless switched off, and the bracket that matches the one
/// at the cursor is marked. If wanted, the margin shows the first colour that a line names. Lines with problems have a
/// mark there, or their number is one, with the reasons as its tool tip.
class CodeEdit final : public QPlainTextEdit
{
    Q_OBJECT
    Q_PROPERTY(bool lineNumbers READ lineNumbers WRITE setLineNumbers)
    Q_PROPERTY(bool swatches READ swatches WRITE setSwatches)

public:
    explicit CodeEdit(QWidget* parent = nullptr);

    /// The text exactly as set or typed. QPlainTextEdit::toPlainText() would turn no-break spaces into blanks
    /// and line separators into line ends.
    static QString textIn(const QPlainTextEdit& field);

    [[nodiscard]] bool lineNumbers() const { return m_lineNumbers; }
    void setLineNumbers(bool shown);
    [[nodiscard]] bool swatches() const { return m_swatches; }
    void setSwatches(bool shown);

    /// In the text's order, for the text as it is now. They follow their places through edits.
    void setProblems(const QList<CodeProblem>& problems);
    [[nodiscard]] qsizetype problemCount() const { return m_problems.size(); }
    /// Puts the cursor at the next problem behind it; after the last comes the first.
    void goToNextProblem();
    /// The reasons of the problems in a line, counted from 0, a sentence a line.
    [[nodiscard]] QString problemsOfLine(int line) const;

    /// The first colour in a line of CSS: #rgb, rgb(), hsl() or a name behind a colon; invalid if there is none.
    static QColor colourIn(const QString& line);

signals:
    void problemsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void paintNumbers(const QRect& area);
    [[nodiscard]] int numberWidth() const;
    [[nodiscard]] int swatchWidth() const;
    void updateMarks();
    void addBrackets(QList<QTextEdit::ExtraSelection>& marks) const;
    void paintProblem(QPainter& painter, const QRectF& place) const;
    [[nodiscard]] QSet<int> linesWithProblems() const;
    void showReasons(const QHelpEvent& event);

    QWidget* m_margin = nullptr;
    bool m_lineNumbers = true;
    bool m_swatches = false;
    struct Mark
    {
        QTextCursor place; // empty once its text is gone
        QString reason;
    };
    QList<Mark> m_problems;
};

} // namespace luma
