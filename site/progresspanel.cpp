// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/progresspanel.h"

#include "base/files.h"
#include "site/jobline.h"
#include "ui_ProgressPanel.h"

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMessageBox>

#include <utility>

namespace luma {

ProgressPanel::ProgressPanel(JobLine& line, QWidget* window)
    : ProgressReporter(window),
      m_line(line),
      m_window(window),
      m_panel(new QDialog(window)),
      m_ui(std::make_unique<Ui::ProgressPanel>())
{
    m_ui->setupUi(m_panel);
    m_panel->setWindowModality(Qt::WindowModal);
    m_panel->installEventFilter(this);
    keepPlaceOfBar();
    connectControls();
    updateControls();
}

ProgressPanel::~ProgressPanel() = default;

void ProgressPanel::connectControls()
{
    connect(m_ui->progressPanelStopButton, &QPushButton::clicked, this, &ProgressPanel::stop);
    connect(m_ui->progressPanelGoOnButton, &QPushButton::clicked, this, &ProgressPanel::goOn);
    connect(&m_line, &JobLine::stopRequested, this, &ProgressPanel::stop);
    connect(&m_line, &JobLine::goOnRequested, this, &ProgressPanel::goOn);
    connect(&m_line, &JobLine::showRequested, this, &ProgressPanel::show);
    connect(m_ui->progressPanelOKButton, &QPushButton::clicked, m_panel, &QDialog::accept);
    connect(m_ui->copyAllButton, &QPushButton::clicked, m_ui->progressPanelTextField2, &LogView::copyAll);
    connect(m_ui->saveButton, &QPushButton::clicked, this, &ProgressPanel::saveAsText);
    connect(m_ui->progressPanelTextField2, &LogView::lineActivated, this, &ProgressPanel::lineActivated);
}

void ProgressPanel::keepPlaceOfBar()
{
    QSizePolicy policy = m_ui->progressPanelProgressIndicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->progressPanelProgressIndicator->setSizePolicy(policy);
}

bool ProgressPanel::windowShowsASheet() const
{
    const auto dialogs = m_window->findChildren<QDialog*>(QString(), Qt::FindDirectChildrenOnly);
    return std::any_of(dialogs.begin(), dialogs.end(),
                       [](const QDialog* dialog) { return dialog->isVisible(); });
}

void ProgressPanel::begin(const QString& status, Place place)
{
    m_isRunning = true;
    m_place = place;
    m_goOn = nullptr;
    m_ui->progressPanelTextField1->setText(status);
    m_ui->progressPanelTextField2->clear();
    updateControls();
    if (place == Place::Line) {
        m_line.showRunning(status);
    } else {
        m_line.closeLine();
        show();
    }
    qApp->installEventFilter(this);
    emit began();
}

void ProgressPanel::show()
{
    if (!windowShowsASheet())
        m_panel->open();
}

void ProgressPanel::setStatus(const QString& status)
{
    m_ui->progressPanelTextField1->setText(status);
    if (m_place == Place::Line)
        m_line.setText(status);
}

void ProgressPanel::append(const QString& text)
{
    m_ui->progressPanelTextField2->append(text);
}

void ProgressPanel::finish(const JobEnd& end)
{
    m_isRunning = false;
    m_goOn = end.goOn;
    qApp->removeEventFilter(this);
    if (!end.status.isEmpty())
        m_ui->progressPanelTextField1->setText(end.status);
    m_ui->progressPanelTextField2->showEnd();
    updateControls();
    if (m_place == Place::Line) {
        m_line.showEnd(end);
        if (end.how == JobEnd::How::Failed)
            show();
    }
    emit ended();
}

void ProgressPanel::goOn()
{
    const auto goOn = std::exchange(m_goOn, nullptr);
    m_panel->accept();
    m_line.closeLine();
    if (goOn)
        goOn();
}

QString ProgressPanel::lineText(int number) const
{
    return m_ui->progressPanelTextField2->log().lineText(number);
}

void ProgressPanel::updateControls()
{
    // A busy bar: its range is empty. While idle it would look like an input field, so it is hidden.
    m_ui->progressPanelProgressIndicator->setVisible(m_isRunning);
    m_ui->progressPanelStopButton->setEnabled(m_isRunning);
    m_ui->progressPanelGoOnButton->setVisible(m_goOn != nullptr);
    m_ui->progressPanelOKButton->setEnabled(!m_isRunning);
    if (!m_isRunning)
        m_ui->progressPanelOKButton->setFocus();
}

void ProgressPanel::stop()
{
    // The job ends at its next file; asking again would not speed it up.
    m_ui->progressPanelStopButton->setEnabled(false);
    m_line.showStopping();
    emit stopRequested();
}

bool ProgressPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == qApp && event->type() == QEvent::Quit)
        letQuit();
    if (watched != m_panel || !m_isRunning || m_isQuitting || m_place == Place::Line)
        return ProgressReporter::eventFilter(watched, event);
    const bool isEscape =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (isEscape || event->type() == QEvent::Close) {
        event->ignore();
        return true;
    }
    return ProgressReporter::eventFilter(watched, event);
}

// Quitting asks every window to close and stops at the first that refuses.
void ProgressPanel::letQuit()
{
    if (std::exchange(m_isQuitting, true))
        return;
    // deleteLater() waits for the loop that quits, not for the loop of another window's question.
    auto* const attempt = new QObject(this);
    connect(attempt, &QObject::destroyed, this, [this] {
        m_isQuitting = false;
        if (m_isRunning && m_place == Place::Panel && m_window->isVisible())
            show();
    });
    attempt->deleteLater();
}

void ProgressPanel::saveAsText()
{
    auto* const dialog = new QFileDialog(m_panel, tr("Save the log"), QString(), tr("Text (*.txt)"));
    dialog->setObjectName(QStringLiteral("saveLogDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("txt"));
    connect(dialog, &QFileDialog::fileSelected, this, &ProgressPanel::writeLog);
    dialog->open();
}

void ProgressPanel::writeLog(const QString& path)
{
    const QByteArray& text = m_ui->progressPanelTextField2->log().text();
    const auto written = writeFile(QFile::encodeName(path).toStdString(),
                                   {text.constData(), static_cast<std::size_t>(text.size())});
    if (written)
        return;
    auto* const box = new QMessageBox(QMessageBox::Warning, tr("The log could not be saved"),
                                      QString::fromStdString(written.error().text), QMessageBox::Ok, m_panel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace luma
