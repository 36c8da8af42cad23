// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/noticebar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace luma {

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent), m_text(new QLabel), m_reloadButton(new QPushButton(tr("Reload")))
{
    setFrameShape(QFrame::StyledPanel);
    m_text->setObjectName(QStringLiteral("noticeText"));
    m_text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_reloadButton->setObjectName(QStringLiteral("noticeReloadButton"));
    auto* const closeButton = new QPushButton(tr("Dismiss"));
    closeButton->setObjectName(QStringLiteral("noticeCloseButton"));
    auto* const layout = new QHBoxLayout(this);
    const QMargins margins = layout->contentsMargins();
    layout->setContentsMargins(margins.left(), 4, margins.right(), 4);
    layout->addWidget(m_text);
    layout->addWidget(m_reloadButton);
    layout->addWidget(closeButton);
    connect(m_reloadButton, &QPushButton::clicked, this, &NoticeBar::reloadRequested);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void NoticeBar::tell(const QString& text, Offer offer)
{
    m_text->setText(text);
    m_reloadButton->setVisible(offer == Offer::Reload);
    show();
    m_tellsRefusal = false;
}

void NoticeBar::refuse(const QString& reason)
{
    tell(reason);
    m_tellsRefusal = true;
}

void NoticeBar::forgetRefusal()
{
    if (std::exchange(m_tellsRefusal, false))
        hide();
}

bool NoticeBar::offersReload() const
{
    return m_reloadButton->isVisibleTo(this);
}

} // namespace luma
