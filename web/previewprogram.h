// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTimer>

namespace luma {

class ScriptPreview;
struct PreviewSource;
namespace previewpipe {
enum class Word : char;
} // namespace previewpipe

/// What runs in the process of a preview: shows the pages that LUMA sends (see previewpipe.h), and says what the user wants. The
/// other end is PreviewProcess. Main thread.
class PreviewProgram final : public QObject
{
    Q_OBJECT

public:
    /// Reads from `in`, at most what is there, and writes to `out`.
    PreviewProgram(FileDescriptor in, FileDescriptor out);
    ~PreviewProgram() override;

    /// Takes standard input and output for the pipes, shows the preview and returns when LUMA has closed the pipe or the user
    /// the window: the exit status of the process. What is written to standard output meanwhile goes to standard error.
    static int run();

signals:
    /// LUMA is gone, has closed the preview, or has sent what is no message; or the window was closed.
    void ended(int exitStatus);

private:
    void read();
    /// Whether there was a whole one.
    bool takeMessage();
    void show(const PreviewSource& page);
    void open(const PreviewSource& page);
    void bringToFront();
    void say(previewpipe::Word word) const;

    FileDescriptor m_in;
    FileDescriptor m_out;
    QByteArray m_unread;
    QPointer<ScriptPreview> m_window;
    QTimer m_patience; // with the first load
};

} // namespace luma
