// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/stoppednotice.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace luma {

StoppedNotice::StoppedNotice(QWidget* covered) : QWidget(covered)
{
    setObjectName(QStringLiteral("stoppedNotice"));
    setAutoFillBackground(true);
    auto* text = new QLabel(tr("The page can't be shown: its process ended several times.\n"
                               "The page and your edits are kept."));
    text->setAlignment(Qt::AlignCenter);
    auto* button = new QPushButton(tr("Show again"));
    button->setObjectName(QStringLiteral("showAgainButton"));
    auto* layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(text);
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addStretch();
    connect(button, &QPushButton::clicked, this, &StoppedNotice::reloadRequested);
    covered->installEventFilter(this);
    resize(covered->size());
}

bool StoppedNotice::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        resize(parentWidget()->size());
    return QWidget::eventFilter(watched, event);
}

} // namespace luma
