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

// An empty path is any folder.
void add(FolderWatcher::Folders& folders, const QByteArray& path)
{
    if (path.isEmpty())
        folders.reset();
    else if (folders)
        folders->insert(path.toStdString());
}

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
    m_unread.clear();
    m_changedFolders.reset();
    connect(watcherTask, &QProcess::finished, this, [this] {
        answerQuestions(m_lastQuestion, false);
        emit ended();
    });
    connect(watcherTask, &QProcess::readyReadStandardOutput, this, &FolderWatcher::readFolders);
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
    answerQuestions(m_lastQuestion, false);
}

// Texts end with a NUL.
void FolderWatcher::readFolders()
{
    m_unread += watcherTask->readAllStandardOutput();
    qsizetype at = 0;
    for (qsizetype end = m_unread.indexOf('\0'); end >= 0; end = m_unread.indexOf('\0', at)) {
        take(m_unread.mid(at, end - at));
        at = end + 1;
    }
    m_unread.remove(0, at);
}

void FolderWatcher::take(const QByteArray& text)
{
    if (text.startsWith('=')) {
        takeAnswer(text.mid(1));
    } else {
        m_hasRead = true;
        add(m_changedFolders, text);
    }
}

void FolderWatcher::takeAnswer(const QByteArray& text)
{
    if (text.isEmpty() || text.startsWith('/'))
        add(m_answer, text);
    else
        answerQuestions(text.toLongLong(), true);
}

FolderWatcher::Folders FolderWatcher::takeChangedFolders()
{
    return std::exchange(m_changedFolders, std::set<std::string>());
}

void FolderWatcher::askForChanges(const Answer& answer)
{
    if (processId() == 0) {
        answer(false, {});
        return;
    }
    m_questions[++m_lastQuestion] = answer;
    watcherTask->write(QByteArray::number(m_lastQuestion) + '\n');
}

void FolderWatcher::answerQuestions(qint64 last, bool isWatching)
{
    const Folders folders = std::exchange(m_answer, std::set<std::string>());
    while (!m_questions.empty() && m_questions.begin()->first <= last)
        m_questions.extract(m_questions.begin()).mapped()(isWatching, folders);
}

// What the watcher wrote before the notification is in the pipe by now, unless that was full.
void FolderWatcher::receive()
{
    watcherTask->waitForReadyRead(0);
    readFolders();
    if (!std::exchange(m_hasRead, false))
        m_changedFolders.reset();
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
