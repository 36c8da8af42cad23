// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/jobline.h"

#include "browser/panehost.h"

#include "ui_JobLine.h"

#include <QAccessibleWidget>

#include <chrono>

namespace luma {

using namespace std::chrono_literals;

namespace {

QAccessibleInterface* alertOf(const QString& className, QObject* object)
{
    return className == QLatin1String("luma::JobLine")
               ? new QAccessibleWidget(static_cast<JobLine*>(object), QAccessible::AlertMessage)
               : nullptr;
}

} // namespace

JobLine::JobLine(QWidget* parent)
    : QFrame(parent), m_ui(std::make_unique<Ui::JobLine>()), m_showTimer(this), m_goneTimer(this)
{
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(&alertOf), true);
    m_ui->setupUi(this);
    m_showTimer.setSingleShot(true);
    m_showTimer.setInterval(400ms);
    connect(&m_showTimer, &QTimer::timeout, this, &QWidget::show);
    m_goneTimer.setObjectName(QStringLiteral("jobGoneTimer"));
    m_goneTimer.setSingleShot(true);
    m_goneTimer.setInterval(20s);
    connect(&m_goneTimer, &QTimer::timeout, this, &JobLine::goAway);
    connect(m_ui->jobShowButton, &QPushButton::clicked, this, &JobLine::showRequested);
    connect(m_ui->jobUndoButton, &QPushButton::clicked, this, &JobLine::undoRequested);
    connect(m_ui->jobStopButton, &QPushButton::clicked, this, &JobLine::stopRequested);
    connect(m_ui->jobGoOnButton, &QPushButton::clicked, this, &JobLine::goOnRequested);
    connect(m_ui->jobCloseButton, &QPushButton::clicked, this, &JobLine::closeLine);
    hide();
}

JobLine::~JobLine() = default;

void JobLine::showRunning(const QString& status)
{
    m_goneTimer.stop();
    m_ui->jobProgress->show();
    m_ui->jobStopButton->show();
    m_ui->jobStopButton->setEnabled(true);
    for (QWidget* const later : {m_ui->jobUndoButton, m_ui->jobGoOnButton, m_ui->jobCloseButton})
        later->hide();
    setText(status);
    if (!isVisible())
        m_showTimer.start();
}

void JobLine::showStopping()
{
    m_ui->jobStopButton->setEnabled(false);
}

void JobLine::showEnd(const JobEnd& end)
{
    m_showTimer.stop();
    m_ui->jobProgress->hide();
    m_ui->jobUndoButton->setVisible(end.isUndoable);
    m_ui->jobGoOnButton->setVisible(end.goOn != nullptr);
    m_ui->jobCloseButton->show();
    m_ui->jobStopButton->hide();
    show();
    setText(end.status);
    if (end.how == JobEnd::How::Done)
        m_goneTimer.start();
}

void JobLine::forgetUndo()
{
    m_ui->jobUndoButton->hide();
}

void JobLine::closeLine()
{
    m_showTimer.stop();
    m_goneTimer.stop();
    hide();
}

void JobLine::setText(const QString& text)
{
    m_ui->jobText->setText(text);
    setAccessibleName(text);
    // Screen readers read an alert aloud when it appears.
    if (isVisible()) {
        QAccessibleEvent event(this, QAccessible::ObjectShow);
        QAccessible::updateAccessibility(&event);
    }
}

void JobLine::goAway()
{
    if (underMouse() || isAncestorOf(window()->focusWidget()))
        m_goneTimer.start();
    else
        closeLine();
}

} // namespace luma
