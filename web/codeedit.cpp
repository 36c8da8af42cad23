// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/codeedit.h"

#include "web/codecolours.h"
#include "web/csscolours.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

constexpr int gap = 6;                  // pixels beside a number
constexpr int farthestBracket = 20'000; // characters
constexpr int mostMarks = 200;

/// The place of the bracket that matches the one at `place`; -1 if there is none near by. Brackets in strings and comments
/// count like others.
int matchingBracket(const QTextDocument& text, int place)
{
    static const QString brackets = QStringLiteral("()[]{}");
    const auto kind = brackets.indexOf(text.characterAt(place));
    if (kind < 0)
        return -1;
    const bool isOpening = kind % 2 == 0;
    const QChar own = brackets[kind];
    const QChar other = brackets[isOpening ? kind + 1 : kind - 1];
    int depth = 0;
    for (int step = 0; step < farthestBracket; ++step) {
        const int at = isOpening ? place + step : place - step;
        if (at < 0 || at >= text.characterCount())
            return -1;
        const QChar character = text.characterAt(at);
        depth += character == own ? 1 : character == other ? -1 : 0;
        if (depth == 0)
            return at;
    }
    return -1;
}

} // namespace

CodeEdit::CodeEdit(QWidget* parent) : QPlainTextEdit(parent), m_margin(new QWidget(this))
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    // Some desktops enlarge other text alone.
    fixed.setPointSizeF(std::max(QFontInfo(fixed).pointSizeF(), QFontInfo(font()).pointSizeF()));
    setFont(fixed);
    setLineWrapMode(NoWrap);
    setLayoutDirection(Qt::LeftToRight); // whatever the desktop's language
    setTabChangesFocus(true);
    m_margin->installEventFilter(this);
    connect(this, &QPlainTextEdit::blockCountChanged, this, &CodeEdit::layOut);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &CodeEdit::updateMarks);
    connect(this, &QPlainTextEdit::updateRequest, m_margin, [this] { m_margin->update(); });
    layOut();
}

QString CodeEdit::textIn(const QPlainTextEdit& field)
{
    return field.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

void CodeEdit::setLineNumbers(bool shown)
{
    m_lineNumbers = shown;
    layOut();
}

void CodeEdit::setSwatches(bool shown)
{
    m_swatches = shown;
    layOut();
}

int CodeEdit::swatchWidth() const
{
    return m_swatches ? fontMetrics().ascent() + gap : 0;
}

int CodeEdit::numberWidth() const
{
    const auto digits = QString::number(blockCount()).size();
    return m_lineNumbers ? 2 * gap + swatchWidth() + fontMetrics().horizontalAdvance(QString(digits, u'9'))
                         : 0;
}

QColor CodeEdit::colourIn(const QString& line)
{
    const std::vector<CssColour> colours = cssColoursIn(line);
    return colours.empty() ? QColor() : colours.front().colour;
}

void CodeEdit::addBrackets(QList<QTextEdit::ExtraSelection>& marks) const
{
    const int cursor = textCursor().position();
    for (const int place : {cursor, cursor - 1}) {
        const int other = place < 0 ? -1 : matchingBracket(*document(), place);
        if (other < 0)
            continue;
        for (const int at : {place, other}) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = textCursor();
            mark.cursor.setPosition(at);
            mark.cursor.setPosition(at + 1, QTextCursor::KeepAnchor);
            mark.format.setBackground(palette().color(QPalette::Midlight));
            mark.format.setFontUnderline(true);
            marks.append(mark);
        }
        break;
    }
}

void CodeEdit::updateMarks()
{
    QList<QTextEdit::ExtraSelection> marks;
    addBrackets(marks);
    for (const Mark& problem : std::as_const(m_problems)) {
        if (marks.size() > mostMarks)
            break;
        QTextEdit::ExtraSelection mark;
        mark.cursor = problem.place;
        mark.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        mark.format.setUnderlineColor(codecolours::suited(codecolours::problem, palette()));
        marks.append(mark);
    }
    setExtraSelections(marks);
}

void CodeEdit::setProblems(const QList<CodeProblem>& problems)
{
    if (problems.isEmpty() && m_problems.isEmpty())
        return;
    m_problems.clear();
    for (const CodeProblem& each : problems) {
        QTextCursor place(document());
        place.setPosition(each.from);
        place.setPosition(each.to, QTextCursor::KeepAnchor);
        m_problems.append({place, each.reason});
    }
    updateMarks();
    m_margin->update();
    emit problemsChanged();
}

void CodeEdit::goToNextProblem()
{
    if (m_problems.isEmpty())
        return;
    const int here = textCursor().position();
    const auto next = std::find_if(m_problems.constBegin(), m_problems.constEnd(),
                                   [here](const Mark& each) { return each.place.selectionStart() > here; });
    const Mark& chosen = next == m_problems.constEnd() ? m_problems.constFirst() : *next;
    QTextCursor cursor = textCursor();
    cursor.setPosition(chosen.place.selectionStart());
    setTextCursor(cursor);
    centerCursor();
    setFocus();
}

QString CodeEdit::problemsOfLine(int line) const
{
    const QTextBlock block = document()->findBlockByNumber(line);
    QStringList reasons;
    for (const Mark& each : m_problems) {
        if (each.place.hasSelection() && block.contains(each.place.selectionStart()))
            reasons.append(each.reason);
    }
    return reasons.join(u'\n');
}

void CodeEdit::showReasons(const QHelpEvent& event)
{
    QTextBlock block = firstVisibleBlock();
    const auto bottom = [this](const QTextBlock& each) {
        return blockBoundingGeometry(each).translated(contentOffset()).bottom();
    };
    while (block.isValid() && bottom(block) < event.pos().y())
        block = block.next();
    const QString reasons = block.isValid() ? problemsOfLine(block.blockNumber()) : QString();
    if (reasons.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(event.globalPos(), reasons.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>")),
                           m_margin);
}

void CodeEdit::layOut()
{
    setViewportMargins(numberWidth(), 0, 0, 0);
    const QRect inner = contentsRect();
    m_margin->setGeometry(inner.left(), inner.top(), numberWidth(), inner.height());
}

void CodeEdit::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    layOut();
}

bool CodeEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_margin && event->type() == QEvent::Paint)
        paintNumbers(static_cast<QPaintEvent*>(event)->rect());
    if (watched == m_margin && event->type() == QEvent::ToolTip) {
        showReasons(*static_cast<QHelpEvent*>(event));
        return true;
    }
    return QPlainTextEdit::eventFilter(watched, event);
}

QSet<int> CodeEdit::linesWithProblems() const
{
    QSet<int> lines;
    for (const Mark& each : m_problems) {
        if (each.place.hasSelection())
            lines.insert(document()->findBlock(each.place.selectionStart()).blockNumber());
    }
    return lines;
}

void CodeEdit::paintProblem(QPainter& painter, const QRectF& place) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(codecolours::suited(codecolours::problem, palette()));
    painter.drawEllipse(place);
    painter.setPen(palette().color(QPalette::Base));
    painter.drawText(place, Qt::AlignCenter, QStringLiteral("!"));
    painter.restore();
}

void CodeEdit::paintNumbers(const QRect& area)
{
    QPainter painter(m_margin);
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.fillRect(area, palette().alternateBase());
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const QSet<int> withProblems = linesWithProblems();
    const int size = swatchWidth() - gap;
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF line = blockBoundingGeometry(block).translated(contentOffset());
        if (line.top() > area.bottom())
            break;
        const QRectF mark(gap / 2.0, line.top() + (fontMetrics().height() - size) / 2.0, size, size);
        const bool hasProblem = withProblems.contains(block.blockNumber());
        if (hasProblem && m_swatches) {
            paintProblem(painter, mark);
        } else if (const QColor colour = m_swatches ? colourIn(block.text()) : QColor(); colour.isValid()) {
            painter.fillRect(mark, colour);
            painter.drawRect(mark);
        }
        painter.save();
        if (hasProblem && !m_swatches) { // there is no place for a mark
            painter.setPen(codecolours::suited(codecolours::problem, palette()));
            QFont bold = font();
            bold.setBold(true);
            painter.setFont(bold);
        }
        painter.drawText(QRectF(0, line.top(), m_margin->width() - gap, line.height()), Qt::AlignRight,
                         QString::number(block.blockNumber() + 1));
        painter.restore();
    }
}

} // namespace luma
