// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"
#include "web/editorprofile.h"
#include "web/guardedpage.h"
#include "web/pagebridge.h"

#include <QList>
#include <QTimer>
#include <QWebEngineScript>

#include <filesystem>
#include <optional>

class QWebChannel;

namespace luma {

/// One page in the editor: shows given markup with the site's files, and nothing else. The page's own scripts
/// do not run; the editor's run in a separate world. Links that the user activates open in the desktop's
/// browser (QDesktopServices); every other navigation (redirects, refreshes, forms, windows, downloads) is
/// refused, as are dialogs. Main thread.
class EditorPage final : public GuardedPage
{
    Q_OBJECT

public:
    /// The profile outlives the page.
    explicit EditorPage(EditorProfile& profile, QObject* parent = nullptr);
    ~EditorPage() override;

    /// Shows `markup` (UTF-8, any size) as the page at files.page(). ready() and shown() follow.
    void show(const QByteArray& markup, const SiteFolder& files);

    /// Shows this text (UTF-8) of a style sheet instead of its file, or the file again, from the next load of it on.
    void setDraft(const std::filesystem::path& file, const std::optional<QByteArray>& text);
    /// The texts of all open pages, by file; this page's own before those of others.
    [[nodiscard]] QHash<QString, QByteArray> drafts() const;

    /// Whether the page handed over last is ready: false while it loads and after its process has died.
    [[nodiscard]] bool isComplete() const { return m_complete; }

    /// Counts the pages shown; tells a late answer from a current one.
    [[nodiscard]] int generation() const { return m_generation; }
    [[nodiscard]] PageBridge& bridge() { return *m_bridge; }

signals:
    /// The page handed over last is parsed and can be edited; style sheets and images may still be loading.
    void ready();
    /// Its style sheets and images have been loaded or have failed. Comes after ready().
    void shown();
    /// A console message from a script of the editor's world, such as one run in the script console.
    void scriptMessage(const QString& message);
    /// The page's process has ended; the page is blank until it is shown again.
    void processDied();

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& preset,
                          QString* result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    void connectState();
    void addEditorScripts();
    void addMissingScripts();
    void tellShown();
    void watchChannel();
    void fetchMessages();
    void activateLink(const QUrl& url);
    [[nodiscard]] QUrl addressForTheBrowser(const QUrl& url) const;

    EditorProfile& m_profile;
    QString m_host;
    QUrl m_address;
    SiteFolder m_files;
    QList<QWebEngineScript> m_scripts;
    QWebChannel* m_channel = nullptr;
    PageBridge* m_bridge = nullptr;
    QTimer m_silence;          // runs while a loaded page has not reported that it is ready
    QTimer m_fetch;            // runs while messages are fetched from a page with a dead channel
    bool m_isFetching = false; // an answer is pending
    qint64 m_deafProcess = 0;  // the process that no channel reaches
    int m_generation = 0;
    bool m_loadIsDue = false;
    bool m_complete = false;
    bool m_isLoaded = false; // reported by the page, and not passed on yet
};

} // namespace luma
