// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/headingspanel.h"

#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "html/element.h"
#include "page/pageheadings.h"
#include "page/pagetree.h"

#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>

namespace luma {

namespace {

constexpr int delayAfterEdit = 300; // milliseconds
constexpr int blanksPerLevel = 3;
constexpr qsizetype longestHeading = 200;

QString rowOf(const PageHeading& heading)
{
    const QString text = QString::fromStdString(heading.element->text()).left(longestHeading);
    return QString((heading.level - 1) * blanksPerLevel, u' ') + u'h' + QString::number(heading.level) +
           QStringLiteral("  ") + (text.isEmpty() ? HeadingsPanel::tr("(no text)") : text);
}

} // namespace

HeadingsPanel::HeadingsPanel(const Controls& controls, const PageTree& tree, const OutlineModel& outline,
                             OutlineSelection& selection, QObject* parent)
    : QObject(parent), m_controls(controls), m_tree(tree), m_outline(outline), m_selection(selection)
{
    m_controls.pane->hide();
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayAfterEdit);
    connect(&m_delay, &QTimer::timeout, this, &HeadingsPanel::fill);
    const auto noteChange = [this] {
        if (m_controls.pane->isVisible())
            m_delay.start();
    };
    connect(&tree, &PageTree::reset, this, noteChange);
    connect(&tree, &PageTree::exchanged, this, noteChange);
    connect(&tree, &PageTree::attributesSwapped, this, noteChange);
    connect(&selection, &OutlineSelection::changed, this, &HeadingsPanel::markCurrent);
    connect(m_controls.list, &QListWidget::currentItemChanged, this, &HeadingsPanel::choose);
    connect(m_controls.list, &QListWidget::itemActivated, this, &HeadingsPanel::choose);
    connect(m_controls.list, &QListWidget::itemClicked, this, &HeadingsPanel::choose);
    connect(m_controls.closeButton, &QToolButton::clicked, this, &HeadingsPanel::closed);
    auto* const escape = new QShortcut(Qt::Key_Escape, m_controls.pane);
    escape->setContext(Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, &HeadingsPanel::closed);
}

void HeadingsPanel::setShown(bool shown)
{
    m_controls.pane->setVisible(shown);
    if (!shown)
        return;
    fill();
    const QSignalBlocker quiet(m_controls.list); // The list makes its first row the current one.
    m_controls.list->setFocus();
}

void HeadingsPanel::fill()
{
    const QSignalBlocker quiet(m_controls.list);
    m_delay.stop();
    m_rows.clear();
    m_controls.list->clear();
    const auto headings = m_tree.document() ? headingsOf(*m_tree.document()) : std::vector<PageHeading>();
    for (const PageHeading& heading : headings) {
        auto* const row = new QListWidgetItem(rowOf(heading), m_controls.list);
        if (heading.jumps()) {
            QFont bold = m_controls.list->font();
            bold.setBold(true);
            row->setFont(bold);
            row->setText(tr("%1  (after h%2)").arg(row->text(), QString::number(heading.levelBefore)));
            row->setToolTip(tr("Levels are left out"));
            row->setData(Qt::AccessibleDescriptionRole, row->toolTip());
        }
        m_rows.emplace_back(m_outline.indexOf(heading.element));
    }
    m_controls.result->setText(tr("Headings: %1").arg(QLocale().toString(headings.size())));
    markCurrent();
}

// The last heading in front of the selected row.
void HeadingsPanel::markCurrent()
{
    if (!m_controls.pane->isVisible() || m_delay.isActive())
        return;
    const html::Node* const selected = m_selection.node();
    int current = -1;
    for (const html::Node* node = m_tree.document();
         node && selected && current + 1 < static_cast<int>(m_rows.size());
         node = node->following(*m_tree.document())) {
        if (node == OutlineModel::nodeAt(m_rows[static_cast<std::size_t>(current + 1)]))
            ++current;
        if (node == selected)
            break;
    }
    const QSignalBlocker quiet(m_controls.list);
    m_controls.list->setCurrentRow(current);
}

void HeadingsPanel::choose(const QListWidgetItem* row)
{
    const auto number = static_cast<std::size_t>(m_controls.list->row(row)); // -1 for none
    if (number >= m_rows.size() || !m_rows[number].isValid())
        return;
    m_selection.select(OutlineModel::nodeAt(m_rows[number]));
}

} // namespace luma
