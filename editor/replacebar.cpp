// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/replacebar.h"

#include "base/mainhop.h"
#include "editor/outlineselection.h"
#include "html/elementat.h"
#include "html/parse.h"
#include "page/pagecommands.h"
#include "page/pagestore.h"
#include "page/pagetree.h"
#include "page/subtreechange.h"
#include "web/codeedit.h"
#include "web/viewcontroller.h"

#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QUndoStack>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

constexpr int searchDelay = 150; // milliseconds

} // namespace

/// The source, what was found in it, and where its elements stand.
struct ReplaceBar::SourceSearch
{
    QString text;
    std::vector<QRegularExpressionMatch> found;
    std::unique_ptr<html::Document> page; // parsed when it is first asked
};

ReplaceBar::ReplaceBar(const Controls& controls, const Parts& parts, QObject* parent)
    : QObject(parent), m_controls(controls), m_parts(parts)
{
    m_controls.bar->hide();
    m_delay.setSingleShot(true);
    m_delay.setInterval(searchDelay);
    connect(&m_delay, &QTimer::timeout, this, &ReplaceBar::searchNow);
    connectControls();
    connect(&parts.tree, &PageTree::aboutToReset, this, &ReplaceBar::forget);
    connect(&parts.tree, &PageTree::reset, this, &ReplaceBar::forget);
    connect(&parts.tree, &PageTree::aboutToRemove, this, &ReplaceBar::forget);
    connect(&parts.tree, &PageTree::exchanged, this, &ReplaceBar::forget);
    connect(&parts.tree, &PageTree::attributesSwapped, this, &ReplaceBar::forget);
    connect(parts.sheet.document(), &QTextDocument::contentsChanged, this, &ReplaceBar::noteSheet);
}

ReplaceBar::~ReplaceBar()
{
    endSearch();
}

void ReplaceBar::connectControls()
{
    connect(m_controls.field, &QLineEdit::textChanged, this, &ReplaceBar::search);
    for (const QToolButton* const option : {m_controls.caseButton, m_controls.wordsButton,
                                            m_controls.expressionButton, m_controls.sourceButton})
        connect(option, &QToolButton::toggled, this, &ReplaceBar::search);
    connect(m_controls.field, &QLineEdit::returnPressed, this, &ReplaceBar::next);
    connect(m_controls.replacement, &QLineEdit::returnPressed, this, &ReplaceBar::replace);
    connect(m_controls.nextButton, &QToolButton::clicked, this, &ReplaceBar::next);
    connect(m_controls.previousButton, &QToolButton::clicked, this, &ReplaceBar::previous);
    connect(m_controls.closeButton, &QToolButton::clicked, this, &ReplaceBar::close);
    connect(m_controls.replaceButton, &QPushButton::clicked, this, &ReplaceBar::replace);
    connect(m_controls.replaceAllButton, &QPushButton::clicked, this, &ReplaceBar::replaceAll);
    const auto addKey = [this](const QKeySequence& key, void (ReplaceBar::*does)()) {
        auto* const shortcut = new QShortcut(key, m_controls.bar);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, does);
    };
    QWidget::setTabOrder(m_controls.field, m_controls.replacement);
    addKey(Qt::Key_Escape, &ReplaceBar::close);
    addKey(Qt::SHIFT | Qt::Key_Return, &ReplaceBar::previous);
    addKey(Qt::SHIFT | Qt::Key_Enter, &ReplaceBar::previous);
    addKey(Qt::CTRL | Qt::Key_Return, &ReplaceBar::replaceAll);
}

bool ReplaceBar::isShown() const
{
    return m_controls.bar->isVisible();
}

void ReplaceBar::begin()
{
    takePlace(m_parts.sheet.hasFocus());
    m_controls.bar->show();
    m_controls.field->setFocus();
    m_controls.field->selectAll();
    searchNow();
}

void ReplaceBar::takePlace(bool inSheet)
{
    if (inSheet) {
        const QTextCursor cursor = m_parts.sheet.textCursor();
        m_place = cursor.selectionStart();
        if (const QString chosen = cursor.selectedText();
            !chosen.isEmpty() && !chosen.contains(QChar::ParagraphSeparator))
            m_controls.field->setText(chosen);
    } else if (m_inSheet) {
        m_place = 0;
    }
    m_inSheet = inSheet;
    m_controls.sourceButton->setEnabled(!inSheet);
    m_controls.field->setPlaceholderText(inSheet ? tr("Find in the style sheet") : tr("Find"));
    m_controls.field->setAccessibleName(inSheet ? tr("Find in the style sheet") : tr("Find in the page"));
}

bool ReplaceBar::searchesSource() const
{
    return m_controls.sourceButton->isChecked() && !m_inSheet;
}

void ReplaceBar::close()
{
    endSearch();
    m_afterSearch = {};
    m_controls.bar->hide();
    if (m_inSheet)
        m_parts.sheet.setFocus();
    else
        emit closed();
}

void ReplaceBar::noteSheet()
{
    if (m_inSheet)
        forget();
}

// Nodes may be gone at any change of the page, so none is kept.
void ReplaceBar::forget()
{
    endSearch();
    if (isShown())
        m_delay.start();
}

void ReplaceBar::search()
{
    endSearch();
    m_afterSearch = {};
    m_jumps = true;
    m_delay.start();
}

TextQuery ReplaceBar::query() const
{
    return {m_controls.field->text(), m_controls.expressionButton->isChecked(),
            m_controls.caseButton->isChecked(), m_controls.wordsButton->isChecked()};
}

std::size_t ReplaceBar::count() const
{
    return m_source ? m_source->found.size() : m_found.size();
}

// What was found goes, too.
void ReplaceBar::endSearch()
{
    m_delay.stop();
    if (m_search)
        m_search->cancel();
    m_search.reset();
    m_found.clear();
    m_source.reset();
}

void ReplaceBar::searchNow()
{
    endSearch();
    const TextQuery wanted = query();
    const auto expression = wanted.expression();
    if (!expression || !m_parts.tree.document() || wanted.text.isEmpty()) {
        takeFound(expression ? Result<RunMatches>(RunMatches()) : expression.error());
        return;
    }
    m_search = std::make_shared<WorkItem>();
    start(m_search, [guard = QPointer(this), texts = searchedTexts(), expression = *expression,
                     item = m_search](const WorkItem&) {
        const auto matches = matchesInRuns(texts, expression, [&item] { return !item->isCancelled(); });
        onMain(guard, [&](ReplaceBar& bar) {
            if (!item->isCancelled())
                bar.takeFound(matches);
        });
    });
    QTimer::singleShot(searchDelay, this, [this, item = m_search] {
        if (m_search == item)
            m_controls.result->setText(tr("Searching…"));
    });
}

std::vector<QString> ReplaceBar::searchedTexts()
{
    if (!m_inSheet && !searchesSource())
        return textRuns(*m_parts.tree.document());
    m_source = std::make_unique<SourceSearch>();
    m_source->text =
        m_inSheet ? CodeEdit::textIn(m_parts.sheet) : QString::fromStdString(m_parts.store.markup());
    return {m_source->text};
}

void ReplaceBar::takeFound(const Result<RunMatches>& matches)
{
    m_search.reset();
    m_error = matches ? QString() : QString::fromStdString(matches.error().text);
    if (m_source && matches)
        m_source->found = matches->front();
    else if (matches && !matches->empty())
        m_found = placedMatches(*m_parts.tree.document(), *matches);
    m_current = count();
    if (std::exchange(m_jumps, false) && count() > 0)
        step(0);
    else
        tellResult();
    if (const auto then = std::exchange(m_afterSearch, {}))
        then();
}

void ReplaceBar::afterSearch(const std::function<void()>& then)
{
    m_afterSearch = then;
    if (!m_search)
        searchNow();
}

// 0: to the match at the place of the last one, or the next behind it.
void ReplaceBar::step(int direction)
{
    if (isSearching()) {
        afterSearch([this, direction] { step(direction); });
        return;
    }
    if (count() == 0) {
        tellResult();
        return;
    }
    std::size_t match = m_current;
    if (match == count()) {
        match = 0;
        const auto startOf = [this](std::size_t at) {
            return m_source ? m_source->found[at].capturedStart() : m_found[at].start;
        };
        while (match < count() && startOf(match) < m_place)
            ++match;
        match += direction < 0 ? count() - 1 : 0;
    } else {
        match += direction < 0 ? count() - 1 : direction > 0 ? 1 : 0;
    }
    show(match % count());
}

void ReplaceBar::show(std::size_t match)
{
    m_current = match;
    if (m_source) {
        m_place = m_source->found[match].capturedStart();
        m_inSheet ? showInSheet(m_source->found[match]) : showInSource(m_source->found[match]);
    } else {
        m_place = m_found[match].start;
        showInText(m_found[match]);
    }
    tellResult();
}

void ReplaceBar::showInText(const TextMatch& match)
{
    m_parts.rendering.whenCaughtUp(this, [this, start = match.start, end = match.end] {
        if (m_parts.rendering.isFollowing() && !isSearching())
            m_parts.rendering.evaluate(QStringLiteral("selectCharacters(%1, %2)").arg(start).arg(end));
    });
}

// The source parsed again has the same elements as the tree, and knows where they stand.
void ReplaceBar::showInSource(const QRegularExpressionMatch& match)
{
    if (!m_source->page) {
        auto parsed = html::parseWithSource(m_source->text.toStdString());
        if (!parsed)
            return;
        m_source->page = *std::move(parsed);
    }
    const QStringView before = QStringView(m_source->text).first(match.capturedStart());
    const auto line = static_cast<unsigned>(before.count(u'\n')) + 1;
    const auto column = static_cast<unsigned>(before.size() - before.lastIndexOf(u'\n'));
    const html::Element* const there = html::elementAt(*m_source->page, line, column);
    const auto path = there ? pathOf(*there) : std::nullopt;
    if (const html::Element* const element = path ? elementAtPath(*m_parts.tree.document(), *path) : nullptr)
        m_parts.selection.select(element);
}

void ReplaceBar::showInSheet(const QRegularExpressionMatch& match)
{
    QTextCursor cursor = m_parts.sheet.textCursor();
    cursor.setPosition(static_cast<int>(match.capturedStart()));
    cursor.setPosition(static_cast<int>(match.capturedEnd()), QTextCursor::KeepAnchor);
    m_parts.sheet.setTextCursor(cursor);
    m_parts.sheet.ensureCursorVisible();
}

void ReplaceBar::replace()
{
    m_parts.rendering.whenCaughtUp(this, [this] {
        if (isSearching()) {
            afterSearch([this] { replace(); });
        } else if (m_current == count()) {
            step(0);
        } else {
            m_jumps = true;
            replaceMatches(m_current, m_current + 1, tr("Replace"));
        }
    });
}

void ReplaceBar::replaceAll()
{
    m_parts.rendering.whenCaughtUp(this, [this] {
        if (isSearching())
            afterSearch([this] { replaceAll(); });
        else if (count() > 0)
            replaceMatches(0, count(), tr("Replace All"));
    });
}

void ReplaceBar::replaceMatches(std::size_t first, std::size_t end, const QString& name)
{
    const QString replacement = m_controls.replacement->text();
    const bool isExpression = m_controls.expressionButton->isChecked();
    const auto quiet = m_parts.selection.quietly();
    if (m_inSheet) {
        replaceInSheet(first, end);
    } else if (m_source) {
        replaceInSource(first, end, name);
    } else {
        const std::vector<TextMatch> wanted(m_found.begin() + static_cast<std::ptrdiff_t>(first),
                                            m_found.begin() + static_cast<std::ptrdiff_t>(end));
        m_place = wanted.front().start +
                  replacementFor(wanted.front().match.capturedTexts(), replacement, isExpression).size();
        PageCommands(m_parts.tree, m_parts.stack)
            .setTexts(textsAfter(wanted, replacement, isExpression), name);
        emit textEdited();
    }
}

// One step of the field's own history. From the end, so that the places in front stay.
void ReplaceBar::replaceInSheet(std::size_t first, std::size_t end)
{
    if (m_parts.sheet.isReadOnly())
        return;
    const bool isExpression = m_controls.expressionButton->isChecked();
    const std::vector<QRegularExpressionMatch> found = m_source->found; // which the edit takes away
    QTextCursor cursor = m_parts.sheet.textCursor();
    cursor.beginEditBlock();
    for (std::size_t at = end; at-- > first;) {
        cursor.setPosition(static_cast<int>(found[at].capturedStart()));
        cursor.setPosition(static_cast<int>(found[at].capturedEnd()), QTextCursor::KeepAnchor);
        cursor.insertText(
            replacementFor(found[at].capturedTexts(), m_controls.replacement->text(), isExpression));
        m_place = cursor.position();
    }
    cursor.endEditBlock();
}

void ReplaceBar::replaceInSource(std::size_t first, std::size_t end, const QString& name)
{
    const QString replacement = m_controls.replacement->text();
    const bool isExpression = m_controls.expressionButton->isChecked();
    QString text;
    qsizetype done = 0;
    for (std::size_t at = first; at < end; ++at) {
        const QRegularExpressionMatch& match = m_source->found[at];
        text += QStringView(m_source->text).sliced(done, match.capturedStart() - done);
        text += replacementFor(match.capturedTexts(), replacement, isExpression);
        done = match.capturedEnd();
    }
    m_place = text.size();
    text += QStringView(m_source->text).sliced(done);
    if (const auto taken = m_parts.store.setSource(text.toStdString(), name); !taken)
        emit refused(QString::fromStdString(taken.error().text));
    else
        emit sourceEdited();
}

void ReplaceBar::tellResult()
{
    const QLocale locale;
    const QString all = locale.toString(count());
    if (!m_error.isEmpty())
        m_controls.result->setText(m_error);
    else if (m_controls.field->text().isEmpty())
        m_controls.result->clear();
    else if (count() == 0)
        m_controls.result->setText(tr("Not found"));
    else if (m_current == count())
        m_controls.result->setText(tr("%1 found").arg(all));
    else
        m_controls.result->setText(tr("%1 of %2").arg(locale.toString(m_current + 1), all));
    for (QWidget* const button :
         {static_cast<QWidget*>(m_controls.nextButton), static_cast<QWidget*>(m_controls.previousButton),
          static_cast<QWidget*>(m_controls.replaceButton),
          static_cast<QWidget*>(m_controls.replaceAllButton)}) {
        if (count() == 0 && button->hasFocus())
            m_controls.field->setFocus();
        button->setEnabled(count() > 0);
    }
}

} // namespace luma
