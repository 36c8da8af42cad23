// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWebEnginePage>

namespace luma {

/// A page that gets nothing of the user's: every permission, full screen, quota, registration of a protocol and choice of
/// files is refused. Main thread.
class GuardedPage : public QWebEnginePage
{
    Q_OBJECT

public:
    /// The profile outlives the page.
    explicit GuardedPage(QWebEngineProfile& profile, QObject* parent = nullptr);

protected:
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                            const QStringList& acceptedMimeTypes) override;
};

} // namespace luma
