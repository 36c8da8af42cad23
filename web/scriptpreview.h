// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>
#include <QTimer>

#include <memory>

class QLabel;
class QListWidget;
class QUrl;

namespace luma {

class PreviewPage;
class PreviewProfile;
struct PreviewSource;

/// A window that shows a page with its scripts running, shut in: a profile of its own, which keeps nothing, and no files but
/// the site's, no network, downloads, windows, permissions or dialogs. What the page is refused, and what its scripts report,
/// is listed at the foot. A script that does not end can be stopped. WebRTC passes the profile's filter, so the process has to
/// have no network (PageScheme::Network::Closed). Deletes itself when closed. Main thread.
class ScriptPreview final : public QMainWindow
{
    Q_OBJECT

public:
    explicit ScriptPreview(const PreviewSource& page);
    ~ScriptPreview() override;

    void showPage(const PreviewSource& page);
    /// Ends the page's process, whatever it is doing.
    void stop();

    [[nodiscard]] PreviewPage& page() const { return *m_page; }

signals:
    /// The user wants to see the page as it is in the editor now; to quit the application.
    void pageWanted();
    void quitRequested();

private:
    void createActions();
    void createView();
    void connectPage();
    void list(const QString& kind, const QString& text);
    void ping();
    void updateTitle();

    std::unique_ptr<PreviewProfile> m_profile;
    PreviewPage* m_page = nullptr;
    QLabel* m_state = nullptr;
    QListWidget* m_messages = nullptr;
    QTimer m_ping;
    bool m_isAsked = false; // the page, whether it still answers
    bool m_isStopped = false;
};

} // namespace luma
