// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/processrecovery.h"

#include "web/mywebview.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace luma {

namespace {

constexpr int deathsInARow = 3;
constexpr qint64 aRow = 30'000; // milliseconds

} // namespace

ProcessRecovery::ProcessRecovery(MyWebView& view, QObject* parent) : QObject(parent), m_view(view)
{
    // Queued: the engine is still at work when it reports the death.
    connect(&view.editorPage(), &EditorPage::processDied, this, &ProcessRecovery::recover,
            Qt::QueuedConnection);
    view.parentWidget()->installEventFilter(this);
}

void ProcessRecovery::recover()
{
    if (!m_sinceDeath.isValid() || m_sinceDeath.elapsed() > aRow)
        m_deaths = 0;
    m_sinceDeath.start();
    if (++m_deaths <= deathsInARow)
        emit showingRequested();
    else
        showNotice();
}

void ProcessRecovery::showNotice()
{
    if (m_notice)
        return;
    m_view.heldInput().clear();
    m_notice = new QWidget(m_view.parentWidget());
    m_notice->setObjectName(QStringLiteral("stoppedNotice"));
    m_notice->setAutoFillBackground(true);
    auto* const text = new QLabel(tr("The page can't be shown: its process ended several times.\n"
                                     "The page and your edits are kept."));
    text->setAlignment(Qt::AlignCenter);
    auto* const button = new QPushButton(tr("Show again"));
    button->setObjectName(QStringLiteral("showAgainButton"));
    connect(button, &QPushButton::clicked, this, [this] {
        m_deaths = 0;
        emit showingRequested();
    });
    auto* const layout = new QVBoxLayout(m_notice);
    layout->addStretch();
    layout->addWidget(text);
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addStretch();
    m_notice->resize(m_view.parentWidget()->size());
    m_notice->show();
}

void ProcessRecovery::hideNotice()
{
    delete m_notice;
}

bool ProcessRecovery::eventFilter(QObject* watched, QEvent* event)
{
    if (m_notice && event->type() == QEvent::Resize)
        m_notice->resize(m_view.parentWidget()->size());
    return QObject::eventFilter(watched, event);
}

} // namespace luma
