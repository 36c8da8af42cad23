// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"

#include <QObject>

namespace luma {

/// Turns SIGTERM, SIGINT and SIGHUP into an ordinary quit, so that nothing is lost when the desktop session
/// ends: windows are asked to close, and what is saved at quit is saved. A second signal ends the program at
/// once, unless a window has refused to close: then it asks again. Create one, on the main thread, after the application object.
class QuitSignals final : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject* parent = nullptr);
    ~QuitSignals() override;

private:
    static void arm();
    void quit();

    FileDescriptor m_readEnd;
    FileDescriptor m_writeEnd;
};

} // namespace luma
