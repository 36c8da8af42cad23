// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/previewprocess.h"

#include "base/resources.h"
#include "web/previewpipe.h"
#include "web/previewsource.h"

#include <QFile>
#include <QPointer>
#include <QProcess>

#include <utility>

namespace luma {

namespace {

// Milliseconds.
constexpr int unnoticedDelay = 400;
constexpr int patienceWithProcess = 60'000;
constexpr int patienceWithEnd = 200;

} // namespace

QString PreviewProcess::ownProgram()
{
    return QFile::decodeName(applicationProgram().c_str());
}

PreviewProcess::PreviewProcess(std::function<void(const Take& take)> source, QObject* parent, QString program)
    : QObject(parent), m_source(std::move(source)), m_program(std::move(program))
{
    m_delay.setSingleShot(true);
    connect(&m_delay, &QTimer::timeout, this, &PreviewProcess::noteDelay);
}

PreviewProcess::~PreviewProcess()
{
    if (!m_process)
        return;
    m_process->disconnect(this);
    m_process->closeWriteChannel();
    // Ends at once, unless it hangs.
    if (m_process->state() != QProcess::NotRunning && !m_process->waitForFinished(patienceWithEnd)) {
        m_process->kill();
        m_process->waitForFinished();
    }
}

qint64 PreviewProcess::processId() const
{
    return m_process ? m_process->processId() : 0;
}

void PreviewProcess::show()
{
    m_isWanted = true;
    m_delay.start(unnoticedDelay);
    if (m_process)
        m_process->write(previewpipe::message({}));
    else
        start();
}

void PreviewProcess::start()
{
    m_hasShown = false;
    m_isDue = false;
    m_process = new QProcess(this);
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(m_process, &QProcess::readyReadStandardOutput, this, &PreviewProcess::readWords);
    connect(m_process, &QProcess::bytesWritten, this, [this] {
        if (m_process->bytesToWrite() == 0 && std::exchange(m_isDue, false))
            reload();
    });
    connect(m_process, &QProcess::finished, this, &PreviewProcess::noteEnd);
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fail(tr("The preview with scripts can't be started: %1").arg(m_process->errorString()));
    });
    m_process->start(m_program, {QLatin1String(option)});
    reload();
}

void PreviewProcess::reload()
{
    if (!m_process)
        return;
    m_isDue = m_process->bytesToWrite() > 0;
    if (!m_isDue) {
        m_source([self = QPointer(this)](const PreviewSource& page) {
            if (self)
                self->send(page);
        });
    }
}

void PreviewProcess::send(const PreviewSource& page)
{
    if (m_process)
        m_process->write(previewpipe::message(page.toBytes()));
}

void PreviewProcess::readWords()
{
    using previewpipe::Word;
    const QByteArray words = m_process->readAllStandardOutput();
    const auto has = [&words](Word word) { return words.contains(static_cast<char>(word)); };
    if (has(Word::Shown) && std::exchange(m_isWanted, false)) {
        m_hasShown = true;
        m_delay.stop();
        emit shown();
    }
    if (has(Word::PageWanted))
        reload();
    if (has(Word::Quit))
        emit quitRequested();
}

void PreviewProcess::noteDelay()
{
    if (m_delay.interval() != unnoticedDelay) {
        fail(tr("The preview with scripts does not answer."));
        return;
    }
    m_delay.start(patienceWithProcess);
    if (!m_hasShown)
        emit delayed();
}

void PreviewProcess::noteEnd()
{
    const bool hasFailed = m_process->exitStatus() != QProcess::NormalExit || m_process->exitCode() != 0;
    if (hasFailed || !m_hasShown) {
        fail(tr("The preview with scripts has ended by itself."));
        return;
    }
    forgetProcess();
    // Asked for after its window was closed.
    if (m_isWanted)
        start();
}

void PreviewProcess::fail(const QString& reason)
{
    forgetProcess();
    m_isWanted = false;
    m_delay.stop();
    emit failed(reason);
}

void PreviewProcess::forgetProcess()
{
    m_process->disconnect(this);
    m_process->kill();
    std::exchange(m_process, nullptr)->deleteLater();
}

} // namespace luma
