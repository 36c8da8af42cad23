// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"

#include <QObject>

namespace luma {

/// Turns SIGTERM, SIGINT and SIGHUP into an ordinary quit, so that the end of a desktop session loses
/// nothing: windows are asked to close, and what is saved at quit is saved. A second signal ends the program
/// at once. One for the application, made on the main thread after the application object.
class QuitSignals final : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignals(QObject* parent = nullptr);
    ~QuitSignals() override;

private:
    FileDescriptor m_readEnd;
    FileDescriptor m_writeEnd;
};

} // namespace luma
