// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlinefind.h"

#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "html/document.h"
#include "html/element.h"
#include "page/pagetree.h"
#include "web/scriptcall.h"
#include "web/viewcontroller.h"

#include <QDeadlineTimer>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace luma {

namespace {

constexpr int typingDelay = 150; // milliseconds
constexpr int longestSlice = 10; // milliseconds

using Nodes = std::vector<html::Node*>;

/// The nodes that `isWanted`, in document order.
Nodes nodesOf(const html::Document& page, const std::function<bool(const html::Node&)>& isWanted)
{
    Nodes found;
    for (html::Node* node = page.firstChild(); node; node = node->following(page)) {
        if (isWanted(*node))
            found.push_back(node);
    }
    return found;
}

/// The elements with these numbers, counted from 0 in document order as the engine counts: without those in templates.
Nodes elementsNumbered(const html::Document& page, const QList<int>& numbers)
{
    int number = -1;
    auto wanted = numbers.begin();
    const html::Element* outermost = nullptr; // the template that the walk is in
    return nodesOf(page, [&](const html::Node& node) {
        const html::Element* const element = node.asElement();
        if (!element || (outermost && element->isInside(*outermost)))
            return false;
        outermost = element->is("template") ? element : nullptr;
        ++number;
        const bool isWanted = wanted != numbers.end() && *wanted == number;
        if (isWanted)
            ++wanted;
        return isWanted;
    });
}

/// Both lists in one, in document order.
Nodes joined(const html::Document& page, const Nodes& a, const Nodes& b)
{
    auto inA = a.begin();
    auto inB = b.begin();
    return nodesOf(page, [&](const html::Node& node) {
        const bool isInA = inA != a.end() && *inA == &node;
        const bool isInB = inB != b.end() && *inB == &node;
        std::advance(inA, isInA ? 1 : 0);
        std::advance(inB, isInB ? 1 : 0);
        return isInA || isInB;
    });
}

} // namespace

OutlineFind::OutlineFind(const Controls& controls, OutlineModel& outline, const PageTree& tree,
                         OutlineSelection& selection, ViewController& rendering, QObject* parent)
    : QObject(parent),
      m_controls(controls),
      m_outline(outline),
      m_tree(tree),
      m_selection(selection),
      m_rendering(rendering)
{
    m_controls.bar->hide();
    m_delay.setSingleShot(true);
    m_delay.setInterval(typingDelay);
    m_slices.setSingleShot(true);
    connect(&m_slices, &QTimer::timeout, this, &OutlineFind::searchOn);
    connectControls();
    connectChanges();
}

void OutlineFind::connectControls()
{
    connect(&m_delay, &QTimer::timeout, this, &OutlineFind::search);
    connect(m_controls.field, &QLineEdit::textEdited, this, [this] {
        forgetMatches();
        m_jump = Jump::ToMatch;
        m_delay.start();
    });
    connect(m_controls.field, &QLineEdit::returnPressed, this, &OutlineFind::next);
    connect(m_controls.nextButton, &QToolButton::clicked, this, &OutlineFind::next);
    connect(m_controls.previousButton, &QToolButton::clicked, this, &OutlineFind::previous);
    connect(m_controls.closeButton, &QToolButton::clicked, this, &OutlineFind::close);
    connect(&m_selection, &OutlineSelection::changed, this, &OutlineFind::tellResult);
    const auto addKey = [this](const QKeySequence& key, void (OutlineFind::*does)()) {
        auto* const shortcut = new QShortcut(key, m_controls.bar);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, does);
    };
    addKey(Qt::Key_Escape, &OutlineFind::close);
    addKey(Qt::SHIFT | Qt::Key_Return, &OutlineFind::previous);
    addKey(Qt::SHIFT | Qt::Key_Enter, &OutlineFind::previous);
}

void OutlineFind::connectChanges()
{
    connect(&m_outline, &OutlineModel::modelAboutToBeReset, this, &OutlineFind::forget);
    connect(&m_outline, &OutlineModel::modelReset, this, &OutlineFind::forget);
    connect(&m_outline, &OutlineModel::layoutChanged, this, &OutlineFind::forget);
    connect(&m_outline, &OutlineModel::rowsInserted, this, &OutlineFind::forget);
    connect(&m_outline, &OutlineModel::rowsMoved, this, &OutlineFind::forget);
    connect(&m_outline, &OutlineModel::rowsAboutToBeRemoved, this, &OutlineFind::forget);
    connect(&m_outline, &OutlineModel::dataChanged, this,
            [this](const QModelIndex&, const QModelIndex&, const QList<int>& roles) {
                if (roles.isEmpty()) // else only the colour of the active row has changed
                    forget();
            });
}

void OutlineFind::begin()
{
    m_controls.bar->show();
    m_controls.field->setFocus();
    m_controls.field->selectAll();
    m_jump = Jump::Nowhere;
    search();
}

void OutlineFind::close()
{
    m_delay.stop();
    forgetMatches();
    m_controls.bar->hide();
    emit closed();
}

// Elements may be gone at any change of the page, so none is kept.
void OutlineFind::forget()
{
    forgetMatches();
    if (m_controls.bar->isVisible() && !m_delay.isActive())
        m_delay.start();
}

void OutlineFind::forgetMatches()
{
    m_found.clear();
    m_at = nullptr;
    m_slices.stop();
    ++m_searches;
}

void OutlineFind::search()
{
    m_delay.stop();
    forgetMatches();
    html::Document* const page = m_tree.document();
    m_at = page && !m_controls.field->text().isEmpty() ? page->firstChild() : nullptr;
    searchOn();
}

// A large page is searched in slices, so that the window answers meanwhile.
void OutlineFind::searchOn()
{
    const QString wanted = m_controls.field->text();
    const QDeadlineTimer end(longestSlice);
    for (; m_at && !end.hasExpired(); m_at = m_at->following(*m_tree.document())) {
        if (m_outline.hasRow(*m_at) && m_outline.rowText(*m_at).contains(wanted, Qt::CaseInsensitive))
            m_found.push_back(m_at);
    }
    if (m_at) {
        m_slices.start();
        return;
    }
    const Jump jump = std::exchange(m_jump, Jump::Nowhere);
    if (m_tree.document() && !wanted.isEmpty())
        askEngine(m_found.empty() ? jump : Jump::Nowhere);
    go(jump);
}

void OutlineFind::askEngine(Jump jump)
{
    m_rendering.whenCaughtUp(this, [this, jump, search = m_searches, text = m_controls.field->text()] {
        if (search != m_searches || !m_rendering.isFollowing())
            return;
        m_rendering.ask(scriptCall(QStringLiteral("findElements"), text), this,
                        [this, jump, search](const QVariant& answer) {
                            if (search == m_searches)
                                takeAnswer(answer, jump);
                        });
    });
}

void OutlineFind::takeAnswer(const QVariant& answer, Jump jump)
{
    QList<int> numbers;
    for (const QString& number : answer.toString().split(u' ', Qt::SkipEmptyParts))
        numbers.append(number.toInt());
    if (numbers.isEmpty())
        return;
    m_found = joined(*m_tree.document(), m_found, elementsNumbered(*m_tree.document(), numbers));
    go(jump);
}

void OutlineFind::next()
{
    step(Jump::ToNext);
}

void OutlineFind::previous()
{
    step(Jump::ToPrevious);
}

void OutlineFind::step(Jump jump)
{
    if (!m_delay.isActive() && !m_at && !m_found.empty()) {
        go(jump);
        return;
    }
    if (m_jump != Jump::ToMatch)
        m_jump = jump;
    if (!m_at)
        search();
}

void OutlineFind::go(Jump jump)
{
    if (jump != Jump::Nowhere && !m_found.empty()) {
        std::size_t match = matchesBeforeSelected();
        if (jump == Jump::ToPrevious)
            match += m_found.size() - 1;
        else if (jump == Jump::ToNext && match < m_found.size() && m_found[match] == m_selection.node())
            ++match;
        m_selection.select(m_found[match % m_found.size()]);
    }
    tellResult();
}

void OutlineFind::tellResult()
{
    if (!m_controls.bar->isVisible() || m_delay.isActive() || m_at)
        return;
    const QLocale locale;
    const auto selected = std::find(m_found.begin(), m_found.end(), m_selection.node());
    const QString count = locale.toString(m_found.size());
    if (m_controls.field->text().isEmpty())
        m_controls.result->clear();
    else if (m_found.empty())
        m_controls.result->setText(tr("Not found"));
    else if (selected == m_found.end())
        m_controls.result->setText(tr("%1 found").arg(count));
    else
        m_controls.result->setText(
            tr("%1 of %2").arg(locale.toString(selected - m_found.begin() + 1), count));
    m_controls.nextButton->setEnabled(!m_found.empty());
    m_controls.previousButton->setEnabled(!m_found.empty());
}

std::size_t OutlineFind::matchesBeforeSelected() const
{
    const html::Node* const selected = m_selection.node();
    std::size_t count = 0;
    const html::Document& page = *m_tree.document();
    for (const html::Node* node = selected ? page.firstChild() : nullptr;
         node && node != selected && count < m_found.size(); node = node->following(page))
        count += node == m_found[count] ? 1 : 0;
    return count;
}

} // namespace luma
