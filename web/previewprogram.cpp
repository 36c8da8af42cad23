// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/previewprogram.h"

#include "base/quitsignals.h"
#include "web/previewpage.h"
#include "web/previewpipe.h"
#include "web/scriptpreview.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <fcntl.h>

#include <array>
#include <cstdlib>

namespace luma {

namespace {

constexpr std::size_t mostAtOnce = 1 << 16; // bytes, a pipe's capacity
constexpr int patienceWithPage = 400;       // milliseconds

// The standard descriptor's file, which the processes of the engine do not inherit. What takes its place is open as `flags` say.
FileDescriptor takeOver(int standard, const char* replacement, int flags)
{
    FileDescriptor taken(::fcntl(standard, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    const FileDescriptor other(replacement ? ::open(replacement, flags | O_CLOEXEC)
                                           : ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0));
    ::dup2(other.get(), standard);
    return taken;
}

} // namespace

PreviewProgram::PreviewProgram(FileDescriptor in, FileDescriptor out)
    : m_in(std::move(in)), m_out(std::move(out))
{
    auto* const notifier = new QSocketNotifier(m_in.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &PreviewProgram::read);
    connect(this, &PreviewProgram::ended, notifier, [notifier] { notifier->setEnabled(false); });
    m_patience.setSingleShot(true);
    m_patience.setInterval(patienceWithPage);
    connect(&m_patience, &QTimer::timeout, this, &PreviewProgram::bringToFront);
}

PreviewProgram::~PreviewProgram()
{
    if (m_window) {
        m_window->disconnect(this);
        delete m_window;
    }
}

int PreviewProgram::run()
{
    const QuitSignals signalled;
    PreviewProgram program(takeOver(STDIN_FILENO, "/dev/null", O_RDONLY),
                           takeOver(STDOUT_FILENO, nullptr, O_WRONLY));
    connect(&program, &PreviewProgram::ended, qApp, &QCoreApplication::exit, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

void PreviewProgram::read()
{
    std::array<char, mostAtOnce> bytes = {};
    const ssize_t count = ::read(m_in.get(), bytes.data(), bytes.size());
    if (count <= 0) {
        if (count == 0 || (errno != EINTR && errno != EAGAIN))
            emit ended(EXIT_SUCCESS);
        return;
    }
    m_unread.append(bytes.data(), count);
    while (takeMessage()) {
    }
}

bool PreviewProgram::takeMessage()
{
    using namespace previewpipe;
    if (m_unread.size() < lengthSize)
        return false;
    const auto length = qFromBigEndian<quint64>(m_unread.constData());
    if (length > longestContents) {
        emit ended(EXIT_FAILURE);
        return false;
    }
    const auto end = lengthSize + static_cast<qsizetype>(length);
    if (m_unread.size() < end)
        return false;
    const QByteArray contents = m_unread.mid(lengthSize, end - lengthSize);
    m_unread.remove(0, end);
    if (contents.isEmpty())
        bringToFront();
    else if (const auto page = PreviewSource::fromBytes(contents))
        show(*page);
    else
        emit ended(EXIT_FAILURE);
    return true;
}

void PreviewProgram::show(const PreviewSource& page)
{
    if (m_window)
        m_window->showPage(page);
    else
        open(page);
}

// An empty window would flash, so it waits for the page, but not for one that takes its time.
void PreviewProgram::open(const PreviewSource& page)
{
    m_window = new ScriptPreview(page);
    connect(m_window, &ScriptPreview::pageWanted, this, [this] { say(previewpipe::Word::PageWanted); });
    connect(m_window, &ScriptPreview::quitRequested, this, [this] { say(previewpipe::Word::Quit); });
    connect(m_window, &QObject::destroyed, this, [this] { emit ended(EXIT_SUCCESS); });
    connect(&m_window->page(), &QWebEnginePage::loadFinished, &m_patience, [this] {
        if (m_patience.isActive())
            bringToFront();
    });
    m_patience.start();
}

void PreviewProgram::bringToFront()
{
    m_patience.stop();
    if (!m_window)
        return;
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    say(previewpipe::Word::Shown);
}

// LUMA reads at once. What can't be written is for nobody.
void PreviewProgram::say(previewpipe::Word word) const
{
    const char byte = static_cast<char>(word);
    [[maybe_unused]] const ssize_t written = ::write(m_out.get(), &byte, 1);
}

} // namespace luma
