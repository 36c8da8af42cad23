// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace luma {

class MyWebView;

/// Has the page shown again after its process has ended. When the process keeps dying, covers the rendering
/// with a notice instead and offers to try once more; the page and its edits are safe in the document
/// meanwhile. Main thread.
class ProcessRecovery final : public QObject
{
    Q_OBJECT

public:
    /// The notice covers the view's parent.
    ProcessRecovery(MyWebView& view, QObject* parent);

    /// The page is being shown: takes the notice away.
    void hideNotice();

signals:
    void showingRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void recover();
    void showNotice();

    MyWebView& m_view;
    QPointer<QWidget> m_notice;
    QElapsedTimer m_sinceDeath;
    int m_deaths = 0;
};

} // namespace luma
