// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/folderwatcher.h"

#include "base/resources.h"
#include "desktop/notifications.h"

#include <QFile>
#include <QProcess>

#include <ctime>

namespace luma {

namespace {

// In nanoseconds, by the clock of file times.
QString now()
{
    timespec time = {};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &time);
    return QString::number(qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec);
}

/// The pause after a refresh, as a multiple of the time that the refresh took.
constexpr qint64 restPerRefresh = 4;
constexpr int patienceWithWatcher = 200; // milliseconds

} // namespace

FolderWatcher::FolderWatcher(QObject* parent) : QObject(parent)
{
    m_delay.setSingleShot(true);
    connect(&m_delay, &QTimer::timeout, this, &FolderWatcher::tell);
}

FolderWatcher::~FolderWatcher()
{
    stop();
}

qint64 FolderWatcher::processId() const
{
    return watcherTask ? watcherTask->processId() : 0;
}

void FolderWatcher::start(const QString& caption, const std::filesystem::path& folder)
{
    stop();
    watcherTask = new QProcess(this);
    watcherTask->setWorkingDirectory(QFile::decodeName(resourceFolder().c_str()));
    watcherTask->setStandardErrorFile(QProcess::nullDevice());
    m_changedFolders.reset();
    connect(watcherTask, &QProcess::finished, this, &FolderWatcher::ended);
    watcherTask->start(QFile::decodeName(helperProgram("LUMAWatcher").c_str()),
                       {caption, QFile::decodeName(folder.c_str()), now()});
    if (watcherTask->processId() == 0)
        return;
    m_observer = std::make_unique<NotificationObserver>(QLatin1String("folderChanged") + caption,
                                                        QString::number(watcherTask->processId()));
    connect(m_observer.get(), &NotificationObserver::posted, this, &FolderWatcher::receive);
}

void FolderWatcher::stop()
{
    m_observer.reset();
    m_delay.stop();
    if (!watcherTask)
        return;
    watcherTask->disconnect(this);
    watcherTask->closeWriteChannel();
    watcherTask->terminate();
    // Ends at once, unless the disk blocks it.
    if (watcherTask->state() != QProcess::NotRunning && !watcherTask->waitForFinished(patienceWithWatcher)) {
        watcherTask->kill();
        watcherTask->waitForFinished();
    }
    delete watcherTask;
    watcherTask = nullptr;
}

// What the watcher wrote before the notification is in the pipe by now.
void FolderWatcher::readFolders()
{
    watcherTask->waitForReadyRead(0);
    const QByteArray text = watcherTask->readAllStandardOutput();
    if (!text.endsWith('\0'))
        m_changedFolders.reset();
    for (qsizetype at = 0; m_changedFolders && at < text.size();) {
        const qsizetype end = text.indexOf('\0', at);
        if (end == at)
            m_changedFolders.reset();
        else
            m_changedFolders->insert(text.mid(at, end - at).toStdString());
        at = end + 1;
    }
}

std::optional<std::set<std::string>> FolderWatcher::takeChangedFolders()
{
    return std::exchange(m_changedFolders, std::set<std::string>());
}

void FolderWatcher::receive()
{
    readFolders();
    if (m_delay.isActive())
        return;
    const qint64 rest = m_sinceLast.isValid() ? m_lastCost * restPerRefresh - m_sinceLast.elapsed() : 0;
    m_delay.start(static_cast<int>(std::max<qint64>(0, rest)));
}

void FolderWatcher::tell()
{
    QElapsedTimer cost;
    cost.start();
    emit changed();
    m_lastCost = cost.elapsed();
    m_sinceLast.start();
}

} // namespace luma
