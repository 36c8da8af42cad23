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

} // namespace

PageLayout::PageLayout(QMainWindow& window, QSplitter& splitView, QSplitter& sideView, const Sides& sides,
                       QAction& allNodes)
    : m_window(window), m_splitView(splitView), m_sideView(sideView), m_sides(sides), m_allNodes(allNodes)
{
    for (const int side : {0, 2}) {
        splitView.widget(side)->setMinimumWidth(narrowestSide);
        splitView.widget(side)->setMaximumWidth(widestSide);
    }
    QObject::connect(sides.outline, &QAction::toggled, splitView.widget(0), &QWidget::setVisible);
    for (const QAction* const action : {sides.attributes, sides.styles})
        QObject::connect(action, &QAction::toggled, &sideView, [this] { showSide(); });
    splitView.setStretchFactor(1, 1);
    splitView.setSizes({widestSide, window.width(), widestSide});
}

void PageLayout::makeRoomForTexts()
{
    for (const int side : {0, 2}) {
        QWidget& pane = *m_splitView.widget(side);
        const int least = std::max(narrowestSide, pane.minimumSizeHint().width());
        pane.setMaximumWidth(std::max(widestSide, least));
        pane.setMinimumWidth(least);
    }
}

void PageLayout::showSide()
{
    m_sideView.widget(0)->setVisible(m_sides.attributes->isChecked());
    m_sideView.widget(1)->setVisible(m_sides.styles->isChecked());
    m_sideView.setVisible(m_sides.attributes->isChecked() || m_sides.styles->isChecked());
}

QByteArray PageLayout::state() const
{
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << m_window.saveGeometry() << m_splitView.saveState() << m_sides.outline->isChecked()
           << m_sides.styles->isChecked() << m_sides.attributes->isChecked() << m_sideView.saveState()
           << m_allNodes.isChecked();
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
    if (stream.status() != QDataStream::Ok)
        return;
    m_window.restoreGeometry(geometry);
    m_splitView.restoreState(split);
    m_sideView.restoreState(sideSplit);
    if (isOf10)
        return;
    m_sides.outline->setChecked(showsOutline);
    m_sides.styles->setChecked(showsStyles);
    m_sides.attributes->setChecked(showsAttributes);
    if (showsAllNodes != m_allNodes.isChecked())
        m_allNodes.trigger();
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
