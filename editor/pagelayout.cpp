// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagelayout.h"

#include "desktop/screenroom.h"

#include <QAction>
#include <QDataStream>
#include <QEvent>
#include <QIODevice>
#include <QMainWindow>
#include <QScreen>
#include <QSplitter>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

// The limits of the widths of the outline and the style sheets, in pixels.
constexpr int narrowestSide = 179;
constexpr int widestSide = narrowestSide + 110;
constexpr int widestWithRules = 640; // their selectors and values are long
constexpr int widthWithRules = 340;
constexpr int narrowestPage = 300; // with both sides beside it

} // namespace

PageLayout::PageLayout(QMainWindow& window, QSplitter& splitView, QSplitter& sideView, const Sides& sides,
                       const Switches& switches)
    : m_window(window), m_splitView(splitView), m_sideView(sideView), m_sides(sides), m_switches(switches)
{
    for (const int side : {0, 2}) {
        splitView.widget(side)->setMinimumWidth(narrowestSide);
        splitView.widget(side)->setMaximumWidth(widestSide);
    }
    for (QAction* const action : {sides.outline, sides.attributes, sides.rules, sides.styles})
        connect(action, &QAction::toggled, this,
                [this, action](bool isShown) { takeChoice(action, isShown); });
    connect(&splitView, &QSplitter::splitterMoved, this, [this] {
        const QList<int> sizes = m_splitView.sizes();
        for (const int side : {0, 2}) {
            if (m_splitView.widget(side)->isVisible())
                m_widths[static_cast<std::size_t>(side)] = sizes[side];
        }
    });
    splitView.setStretchFactor(1, 1);
    // The sides give way, so they don't keep the window from becoming narrower.
    splitView.setMinimumWidth(narrowestPage);
    splitView.installEventFilter(this);
    sideView.widget(1)->hide();
    m_widths = {widestSide, 0, widestSide};
    splitView.setSizes({widestSide, window.width(), widestSide});
}

void PageLayout::makeRoomForTexts()
{
    for (const int side : {0, 2}) {
        QWidget& pane = *m_splitView.widget(side);
        const int least = std::max(narrowestSide, pane.minimumSizeHint().width());
        pane.setMaximumWidth(std::max(widestOf(side), least));
        pane.setMinimumWidth(least);
    }
    arrange();
}

int PageLayout::widestOf(int side) const
{
    return ofText(side == 2 && m_sides.rules->isChecked() ? widestWithRules : widestSide);
}

int PageLayout::ofText(int width) const
{
    return qRound(width * textGrowth(m_window));
}

void PageLayout::showStyleSheets() const
{
    m_sides.styles->setChecked(true);
}

void PageLayout::takeChoice(QAction* action, bool isShown)
{
    if (m_isArranging)
        return;
    m_givenWay.remove(action);
    if (isShown)
        m_openedLast = action == m_sides.outline ? 0 : 2;
    if (isShown && action == m_sides.rules) {
        const QList<int> sizes = m_splitView.sizes();
        m_widths[2] = std::max(m_widths[2], std::min(ofText(widthWithRules), (sizes[1] + sizes[2]) / 2));
    }
    const QSet<QAction*> before = m_givenWay;
    arrange();
    if (isShown)
        m_displaced = m_givenWay - before;
    else if (shownOf(0).isEmpty() && shownOf(2).isEmpty())
        bringBack();
}

// What was opened in place of the other side is closed again.
void PageLayout::bringBack()
{
    for (QAction* const action : std::exchange(m_displaced, {})) {
        if (m_givenWay.contains(action))
            action->setChecked(true);
    }
}

QSet<QAction*> PageLayout::shownOf(int side) const
{
    QSet<QAction*> shown;
    for (QAction* const action : {m_sides.outline, m_sides.attributes, m_sides.rules, m_sides.styles}) {
        if (action->isChecked() && (action == m_sides.outline) == (side == 0))
            shown.insert(action);
    }
    return shown;
}

void PageLayout::arrange()
{
    if (std::exchange(m_isArranging, true))
        return;
    if (m_splitView.isVisible())
        giveWay();
    showParts();
    setWidths();
    m_isArranging = false;
}

void PageLayout::giveWay()
{
    const int wanted = m_splitView.widget(0)->minimumWidth() + m_splitView.widget(2)->minimumWidth() +
                       2 * m_splitView.handleWidth() + narrowestPage;
    const bool hasRoom = m_splitView.width() >= wanted;
    if (!hasRoom && !shownOf(0).isEmpty() && !shownOf(2).isEmpty()) {
        m_givenWay.unite(shownOf(2 - m_openedLast));
        for (QAction* const action : shownOf(2 - m_openedLast))
            action->setChecked(false);
    } else if (hasRoom) {
        for (QAction* const action : std::exchange(m_givenWay, {}))
            action->setChecked(true);
    }
}

void PageLayout::showParts()
{
    m_splitView.widget(0)->setVisible(m_sides.outline->isChecked());
    m_sideView.widget(0)->setVisible(m_sides.attributes->isChecked());
    m_sideView.widget(1)->setVisible(m_sides.rules->isChecked());
    m_sideView.widget(2)->setVisible(m_sides.styles->isChecked());
    m_sideView.setVisible(!shownOf(2).isEmpty());
    m_sideView.setMaximumWidth(std::max(widestOf(2), m_sideView.minimumWidth()));
}

// The sides have their widths where that leaves enough to the page, and less elsewhere.
void PageLayout::setWidths()
{
    std::array<int, 3> widths = {};
    std::array<int, 3> spare = {};
    int page = m_splitView.width();
    for (const std::size_t side : {0U, 2U}) {
        const QWidget& pane = *m_splitView.widget(static_cast<int>(side));
        if (pane.isHidden())
            continue;
        widths[side] = std::clamp(m_widths[side], pane.minimumWidth(), pane.maximumWidth());
        spare[side] = widths[side] - pane.minimumWidth();
        page -= widths[side] + m_splitView.handleWidth();
    }
    const int spared = spare[0] + spare[2];
    const int lacking = std::clamp(narrowestPage - page, 0, spared);
    if (lacking > 0) {
        const int ofFirst = lacking * spare[0] / spared;
        widths[0] -= ofFirst;
        widths[2] -= lacking - ofFirst;
    }
    m_splitView.setSizes({widths[0], std::max(page + lacking, 0), widths[2]});
}

bool PageLayout::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
        arrange();
    return false;
}

QByteArray PageLayout::state() const
{
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    const auto isWanted = [this](QAction* action) {
        return action->isChecked() || m_givenWay.contains(action);
    };
    stream << m_window.saveGeometry() << m_splitView.saveState() << isWanted(m_sides.outline)
           << isWanted(m_sides.styles) << isWanted(m_sides.attributes) << m_sideView.saveState()
           << m_switches.allNodes->isChecked() << isWanted(m_sides.rules) << m_switches.spelling->isChecked()
           << m_widths[0] << m_widths[2];
    return state;
}

void PageLayout::restore(const QByteArray& state)
{
    QByteArray geometry;
    QByteArray split;
    QDataStream stream(state);
    stream >> geometry >> split;
    const bool isOf10 = stream.status() == QDataStream::Ok && stream.atEnd(); // which could hide nothing
    QByteArray sideSplit;
    bool showsOutline = true;
    bool showsStyles = true;
    bool showsAttributes = true;
    if (!isOf10)
        stream >> showsOutline >> showsStyles >> showsAttributes >> sideSplit;
    bool showsAllNodes = false; // of an older state
    if (!stream.atEnd())
        stream >> showsAllNodes;
    const bool isOfTwoParts = stream.status() == QDataStream::Ok && stream.atEnd(); // without the rules
    bool showsRules = false;
    if (!isOf10 && !isOfTwoParts)
        stream >> showsRules;
    bool checksSpelling = false;
    if (!stream.atEnd())
        stream >> checksSpelling;
    std::array<int, 3> widths = {};
    if (!stream.atEnd())
        stream >> widths[0] >> widths[2];
    if (stream.status() != QDataStream::Ok)
        return;
    m_isArranging = true;
    m_sides.rules->setChecked(showsRules);
    m_window.restoreGeometry(geometry);
    m_splitView.restoreState(split);
    for (const std::size_t side : {0U, 2U}) {
        const int before = m_splitView.sizes()[static_cast<int>(side)];
        m_widths[side] = widths[side] > 0 ? widths[side] : before > 0 ? before : m_widths[side];
    }
    if (!isOfTwoParts)
        m_sideView.restoreState(sideSplit);
    if (!isOf10) {
        m_sides.outline->setChecked(showsOutline);
        m_sides.styles->setChecked(showsStyles);
        m_sides.attributes->setChecked(showsAttributes);
    }
    m_givenWay.clear();
    m_openedLast = 0;
    m_isArranging = false;
    arrange();
    if (isOf10)
        return;
    if (showsAllNodes != m_switches.allNodes->isChecked())
        m_switches.allNodes->trigger();
    if (checksSpelling != m_switches.spelling->isChecked())
        m_switches.spelling->trigger();
}

void PageLayout::fitTo(int pageWidth)
{
    const int missing = pageWidth - m_splitView.widget(1)->width();
    if (std::exchange(m_wasFitted, true) || missing <= 0 || m_window.isMaximized() || m_window.isFullScreen())
        return;
    const int most = m_window.screen()->availableGeometry().width();
    m_window.resize(std::max(m_window.width(), std::min(m_window.width() + missing, most)),
                    m_window.height());
}

} // namespace luma
