// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/checkpanel.h"

#include "base/mainhop.h"
#include "editor/outlinemodel.h"
#include "editor/outlinerow.h"
#include "editor/outlineselection.h"
#include "html/element.h"
#include "page/pagelinkcheck.h"
#include "page/pagetree.h"
#include "page/subtreechange.h"
#include "web/scriptcall.h"
#include "web/viewcontroller.h"

#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QShortcut>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace luma {

namespace {

constexpr int delayAfterChange = 500; // milliseconds
constexpr std::size_t mostRows = 1000;
constexpr int longestElement = 60; // characters

QString ratioText(double ratio)
{
    // 4.499 must not read as enough.
    return QLocale().toString(std::floor(ratio * 100) / 100, 'f', 2);
}

QString findingText(const PageFinding& finding)
{
    const QString detail = QString::fromStdString(finding.detail);
    switch (finding.fault) {
    case PageFault::NoTitle:
        return CheckPanel::tr("The page has no title");
    case PageFault::NoLanguage:
        return CheckPanel::tr("The page does not say its language (lang)");
    case PageFault::NoAlternative:
        return CheckPanel::tr("Image without alternative text");
    case PageFault::RepeatedId:
        return CheckPanel::tr("The id \"%1\" is used more than once").arg(detail);
    case PageFault::HeadingJump:
        return CheckPanel::tr("Heading levels are left out: %1").arg(detail);
    case PageFault::EmptyLink:
        return CheckPanel::tr("Link without text");
    case PageFault::EmptyButton:
        return CheckPanel::tr("Button without text");
    case PageFault::MissingLink:
        return CheckPanel::tr("Missing link: %1").arg(detail);
    case PageFault::LowContrast:
        return CheckPanel::tr("Contrast of the text is %1:1, %2:1 is needed")
            .arg(ratioText(finding.contrast), ratioText(finding.neededContrast));
    }
    return {};
}

QString rowText(const PageFinding& finding)
{
    QString element = outlineRowText(*finding.element);
    if (element.size() > longestElement)
        element = element.left(longestElement) + QChar(0x2026);
    return findingText(finding) + QStringLiteral("    ") + element;
}

void sortByPlace(std::vector<PageFinding>& findings, const html::Document& page)
{
    std::unordered_map<const html::Node*, int> places;
    for (const PageFinding& each : findings)
        places[each.element] = 0;
    int place = 0;
    for (const html::Node* node = page.firstChild(); node; node = node->following(page)) {
        if (const auto found = places.find(node); found != places.end())
            found->second = ++place;
    }
    std::stable_sort(findings.begin(), findings.end(), [&](const PageFinding& a, const PageFinding& b) {
        return std::pair(places[a.element], a.fault) < std::pair(places[b.element], b.fault);
    });
}

} // namespace

CheckPanel::CheckPanel(const Controls& controls, const Parts& parts, QObject* parent)
    : QObject(parent), m_controls(controls), m_parts(parts)
{
    m_controls.pane->hide();
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayAfterChange);
    connect(&m_delay, &QTimer::timeout, this, &CheckPanel::check);
    connect(m_controls.list, &QListWidget::currentItemChanged, this, &CheckPanel::selectElement);
    connect(m_controls.list, &QListWidget::itemClicked, this, &CheckPanel::selectElement);
    connect(m_controls.list, &QListWidget::itemActivated, m_parts.rendering.webView(),
            qOverload<>(&QWidget::setFocus));
    connect(m_controls.closeButton, &QToolButton::clicked, this, &CheckPanel::closed);
    auto* const escape = new QShortcut(Qt::Key_Escape, m_controls.pane);
    escape->setContext(Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, &CheckPanel::closed);
}

CheckPanel::~CheckPanel()
{
    if (m_job)
        m_job->cancel();
}

void CheckPanel::setShown(bool shown)
{
    m_controls.pane->setVisible(shown);
    if (!shown) {
        m_parts.rendering.webView()->setFocus();
        return;
    }
    m_controls.list->setFocus();
    check();
}

void CheckPanel::noteChange()
{
    ++m_checks; // the elements found meanwhile may be gone
    if (!m_controls.pane->isHidden())
        m_delay.start();
}

void CheckPanel::check()
{
    m_delay.stop();
    ++m_checks;
    m_found.clear();
    if (m_controls.pane->isHidden() || !m_parts.tree.document())
        return;
    m_controls.result->setText(tr("Checking..."));
    m_found = checkPage(*m_parts.tree.document());
    m_waiting = 2;
    checkLinks();
    m_parts.rendering.whenCaughtUp(this, [this, check = m_checks] {
        if (check == m_checks)
            checkContrast(true);
    });
}

void CheckPanel::checkLinks()
{
    if (m_job)
        m_job->cancel();
    m_job = std::make_shared<WorkItem>();
    start(m_job, [links = PageLinkCheck(*m_parts.tree.document(), m_parts.place(), m_parts.linkRules()),
                  check = m_checks, self = QPointer(this)](const WorkItem&) {
        const auto missing = links.missing();
        onMain(self, [&](CheckPanel& panel) {
            if (check == panel.m_checks)
                panel.finish(missing);
        });
    });
}

// A page that is still loading is checked again when it is shown.
void CheckPanel::checkContrast(bool fromStart)
{
    const QString script =
        fromStart ? QStringLiteral("lowContrasts(true)") : QStringLiteral("lowContrasts(false)");
    m_parts.rendering.ask(script, this, [this, check = m_checks](const QVariant& answer) {
        if (check == m_checks)
            takeContrasts(answer);
    });
}

void CheckPanel::takeContrasts(const QVariant& answer)
{
    const QVariantList parts = answer.toList();
    for (const QVariant& each : parts.value(1).toList()) {
        const QVariantList low = each.toList();
        const html::Element* const element =
            elementAtPath(*m_parts.tree.document(), ScriptCall::path(low.value(0)));
        if (element && QString::fromStdString(element->tagName()) == low.value(3).toString())
            m_found.push_back(
                {PageFault::LowContrast, element, {}, low.value(1).toDouble(), low.value(2).toDouble()});
    }
    if (parts.isEmpty() || parts.value(0).toBool())
        finish({});
    else
        checkContrast(false);
}

void CheckPanel::finish(std::vector<PageFinding> found)
{
    std::move(found.begin(), found.end(), std::back_inserter(m_found));
    if (--m_waiting == 0)
        show();
}

void CheckPanel::show()
{
    sortByPlace(m_found, *m_parts.tree.document());
    const QSignalBlocker quiet(m_controls.list);
    const int current = m_controls.list->currentRow();
    const QString text = current >= 0 ? m_controls.list->currentItem()->text() : QString();
    m_controls.list->clear();
    m_rows.clear();
    const std::size_t shown = std::min(m_found.size(), mostRows);
    for (std::size_t row = 0; row < shown; ++row)
        addRow(m_found[row]);
    const QLocale locale;
    m_controls.result->setText(m_found.empty() ? tr("No problems found")
                               : shown == m_found.size()
                                   ? tr("Problems: %1").arg(locale.toString(m_found.size()))
                                   : tr("Problems: %1, the first %2 are listed")
                                         .arg(locale.toString(m_found.size()), locale.toString(shown)));
    m_found.clear();
    // The row that was selected, where it still is.
    for (int row = std::max(0, current - 1); current >= 0 && row < m_controls.list->count(); ++row) {
        if (m_controls.list->item(row)->text() == text) {
            m_controls.list->setCurrentRow(row);
            break;
        }
    }
}

void CheckPanel::addRow(const PageFinding& finding)
{
    auto* const row = new QListWidgetItem(rowText(finding), m_controls.list);
    row->setToolTip(
        m_rows.emplace_back(m_parts.outline.indexOf(finding.element)).data(Qt::ToolTipRole).toString());
}

void CheckPanel::selectElement(const QListWidgetItem* row)
{
    const int number = row ? m_controls.list->row(row) : -1;
    if (number < 0)
        return;
    const html::Element* const element = OutlineModel::elementAt(m_rows[static_cast<std::size_t>(number)]);
    if (element && element == m_parts.selection.element())
        m_parts.selection.showInPage();
    else if (element)
        m_parts.selection.select(element);
}

} // namespace luma
