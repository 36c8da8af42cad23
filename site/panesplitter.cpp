// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/panesplitter.h"

#include <QMouseEvent>
#include <QResizeEvent>

#include <algorithm>

namespace luma {

namespace {

class PaneSplitterHandle final : public QSplitterHandle
{
public:
    explicit PaneSplitterHandle(PaneSplitter* splitter)
        : QSplitterHandle(splitter->orientation(), splitter), m_splitter(splitter)
    {}

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        m_grip = event->position().toPoint().y();
        QSplitterHandle::mousePressEvent(event);
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (orientation() == Qt::Horizontal) {
            QSplitterHandle::mouseMoveEvent(event);
            return;
        }
        if (!(event->buttons() & Qt::LeftButton))
            return;
        const int asked = parentWidget()->mapFromGlobal(event->globalPosition().toPoint()).y() - m_grip;
        moveSplitter(m_splitter->constrained(asked));
    }

private:
    PaneSplitter* m_splitter;
    int m_grip = 0;
};

} // namespace

panesplit::Heights panesplit::resized(const Heights& before, int height, int divider)
{
    const int available = std::max(0, height - divider);
    const double share = double(before.upper) / std::max(1, before.upper + before.lower);
    const int upper = std::min(qRound(available * share), available - minimumLower);
    const int limited = std::min(std::max(upper, minimumUpper), available);
    return {limited, available - limited};
}

PaneSplitter::PaneSplitter(QWidget* parent) : QSplitter(Qt::Vertical, parent)
{
    setChildrenCollapsible(false);
}

void PaneSplitter::arrange(Qt::Orientation orientation)
{
    setOrientation(orientation);
    const int half = (orientation == Qt::Vertical ? height() : width()) / 2;
    setSizes({half, half});
}

int PaneSplitter::constrained(int position) const
{
    const int lowest = panesplit::constrainMinCoordinate(0);
    const int highest = panesplit::constrainMaxCoordinate(height() - handleWidth());
    return std::max(lowest, std::min(position, highest));
}

QSplitterHandle* PaneSplitter::createHandle()
{
    return new PaneSplitterHandle(this);
}

void PaneSplitter::resizeEvent(QResizeEvent* event)
{
    const QList<int> before = sizes();
    QSplitter::resizeEvent(event);
    // The first layout has no heights to keep. Side by side, the base class keeps the shares.
    if (orientation() == Qt::Horizontal || count() != 2 || event->oldSize().height() <= 0 || before[1] == 0)
        return;
    if (event->oldSize().height() == event->size().height())
        return;
    const panesplit::Heights heights = panesplit::resized({before[0], before[1]}, height(), handleWidth());
    setSizes({heights.upper, heights.lower});
}

} // namespace luma
