// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/noticebar.h"

#include "ui_HTMLDocument.h"

namespace luma {

NoticeBar::NoticeBar(Ui::HTMLDocument& ui, QObject* parent) : QObject(parent), m_ui(ui)
{
    hide();
    connect(ui.noticeReloadButton, &QPushButton::clicked, this, &NoticeBar::reloadRequested);
    connect(ui.noticeCloseButton, &QPushButton::clicked, this, &NoticeBar::hide);
}

void NoticeBar::tell(const QString& text)
{
    m_ui.noticeText->setText(text);
    m_ui.noticeReloadButton->hide();
    m_ui.noticeBar->show();
}

void NoticeBar::tellAndOfferReload(const QString& text)
{
    tell(text);
    m_ui.noticeReloadButton->show();
}

void NoticeBar::hide()
{
    m_ui.noticeBar->hide();
}

} // namespace luma
