// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class QProcess;

namespace luma {

struct PreviewSource;

/// A page's preview with running scripts, in a process of its own: the engine of that process has no network, which can't be
/// had for a profile alone. The process is this program with `option` (see PreviewProgram); it ends with this object and with
/// this program, even if that crashes. Of what it writes only the known single bytes count. Main thread.
class PreviewProcess final : public QObject
{
    Q_OBJECT

public:
    static constexpr const char* option = "--script-preview";

    using Take = std::function<void(const PreviewSource& page)>;
    /// `source` calls `take` with the page as it is now, at once or later; asked when the preview opens and at each reload.
    explicit PreviewProcess(std::function<void(const Take& take)> source, QObject* parent = nullptr,
                            QString program = ownProgram());
    ~PreviewProcess() override;

    /// Opens the preview, or brings it to the front.
    void show();
    /// Shows the page as it is now, if the preview is open. Never waits for the process: what it has not read yet is kept, and
    /// of several pages the last one.
    void reload();

    /// 0 if none is running.
    [[nodiscard]] qint64 processId() const;

    /// The installed program, or the build tree's.
    static QString ownProgram();

signals:
    /// The window is in front.
    void shown();
    /// The window lets itself be waited for.
    void delayed();
    /// The preview could not be opened, or has ended by itself; show() starts anew.
    void failed(const QString& reason);
    /// The user wants to quit the application.
    void quitRequested();

private:
    void start();
    void send(const PreviewSource& page);
    void readWords();
    void noteDelay();
    void noteEnd();
    void fail(const QString& reason);
    void forgetProcess();

    std::function<void(const Take& take)> m_source;
    QString m_program;
    QProcess* m_process = nullptr; // of the window that is open
    QTimer m_delay;                // since show()
    bool m_isWanted = false;       // in front, and is not yet
    bool m_hasShown = false;       // at least once
    bool m_isDue = false;          // a page, once the process has read the one before
};

} // namespace luma
