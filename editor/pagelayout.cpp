// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagelayout.h"

#include <QAction>
#include <QDataStream>
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

} // namespace

PageLayout::PageLayout(QMainWindow& window, QSplitter& splitView, QSplitter& sideView, const Sides& sides,
                       const Switches& switches)
    : m_window(window), m_splitView(splitView), m_sideView(sideView), m_sides(sides), m_switches(switches)
{
    for (const int side : {0, 2}) {
        splitView.widget(side)->setMinimumWidth(narrowestSide);
        splitView.widget(side)->setMaximumWidth(widestSide);
    }
    QObject::connect(sides.outline, &QAction::toggled, splitView.widget(0), &QWidget::setVisible);
    for (const QAction* const action : {sides.attributes, sides.rules, sides.styles})
        QObject::connect(action, &QAction::toggled, &sideView, [this] { showSide(); });
    splitView.setStretchFactor(1, 1);
    sideView.widget(1)->hide();
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
}

int PageLayout::widestOf(int side) const
{
    return side == 2 && m_sides.rules->isChecked() ? widestWithRules : widestSide;
}

void PageLayout::showStyleSheets()
{
    m_sides.styles->setChecked(true);
}

void PageLayout::showSide()
{
    const bool hadRules = !m_sideView.widget(1)->isHidden();
    m_sideView.widget(0)->setVisible(m_sides.attributes->isChecked());
    m_sideView.widget(1)->setVisible(m_sides.rules->isChecked());
    m_sideView.widget(2)->setVisible(m_sides.styles->isChecked());
    m_sideView.setVisible(m_sides.attributes->isChecked() || m_sides.rules->isChecked() ||
                          m_sides.styles->isChecked());
    m_sideView.setMaximumWidth(std::max(widestOf(2), m_sideView.minimumWidth()));
    QList<int> sizes = m_splitView.sizes();
    if (m_sides.rules->isChecked() && !hadRules && sizes[2] < widthWithRules &&
        sizes[1] > 2 * widthWithRules) {
        sizes[1] -= widthWithRules - sizes[2];
        sizes[2] = widthWithRules;
        m_splitView.setSizes(sizes);
    }
}

QByteArray PageLayout::state() const
{
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << m_window.saveGeometry() << m_splitView.saveState() << m_sides.outline->isChecked()
           << m_sides.styles->isChecked() << m_sides.attributes->isChecked() << m_sideView.saveState()
           << m_switches.allNodes->isChecked() << m_sides.rules->isChecked()
           << m_switches.spelling->isChecked();
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
    if (stream.status() != QDataStream::Ok)
        return;
    m_sides.rules->setChecked(showsRules);
    m_window.restoreGeometry(geometry);
    m_splitView.restoreState(split);
    if (!isOfTwoParts)
        m_sideView.restoreState(sideSplit);
    if (isOf10)
        return;
    m_sides.outline->setChecked(showsOutline);
    m_sides.styles->setChecked(showsStyles);
    m_sides.attributes->setChecked(showsAttributes);
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
