// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"
#include "web/editorprofile.h"
#include "web/pagebridge.h"

#include <QList>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <filesystem>
#include <memory>

class QWebChannel;

namespace luma {

/// One page in the editor: shows markup that is handed over, with the site's files beside it, and lets
/// nothing else happen. The page's own scripts do not run; the editor's run in a world of their own. A link
/// that the user activates goes to the desktop (QDesktopServices), every other navigation (redirects,
/// refreshes, forms, windows, downloads) is refused, as are dialogs and permissions. Main thread.
class EditorPage final : public QWebEnginePage
{
    Q_OBJECT

public:
    /// The profile outlives the page.
    explicit EditorPage(EditorProfile& profile, QObject* parent = nullptr);
    ~EditorPage() override;

    /// Shows `markup` (UTF-8, any size) as the page that stands at files.page(). shown() follows.
    void show(const QByteArray& markup, const SiteFolder& files);

    /// True while a page handed over stands there whole: false while one loads, and after its process died.
    [[nodiscard]] bool isComplete() const { return m_complete; }

    /// Counts the pages shown, so that a late answer is known for what it is.
    [[nodiscard]] int generation() const { return m_generation; }

    /// Forgets what was fetched, so that changed sheets and images are read again.
    void clearCaches();
    [[nodiscard]] PageBridge& bridge() { return *m_bridge; }

signals:
    /// The page handed over last stands there whole and can be edited, though sheets and images may be
    /// missing.
    void ready();
    /// So do its sheets and images, or they failed. Comes after ready().
    void shown();
    /// What a script of the editor's world, such as one of the script console, wrote to the console.
    void scriptMessage(const QString& message);
    /// The page's process ended by itself or was ended; the page is blank until it is shown again.
    void processDied();

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                            const QStringList& acceptedMimeTypes) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& preset,
                          QString* result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    void connectRefusals();
    void connectState();
    void addEditorScripts();
    void addMissingScripts();
    void tellShown();
    void watchChannel();
    void fetchMessages();
    void activateLink(const QUrl& url);
    [[nodiscard]] QUrl addressForTheBrowser(const QUrl& url) const;

    // For answers that may come late: the engine gives what is left of them at its end, when this is no
    // EditorPage any more and no QPointer knows it yet.
    const std::shared_ptr<EditorPage> m_self{this, [](EditorPage*) {}};
    EditorProfile& m_profile;
    QString m_host;
    QUrl m_address;
    SiteFolder m_files;
    QList<QWebEngineScript> m_scripts;
    QWebChannel* m_channel = nullptr;
    PageBridge* m_bridge = nullptr;
    QTimer m_silence;          // runs while a loaded page has not told that it is ready
    QTimer m_fetch;            // runs while the page's messages are fetched, its channel being dead
    bool m_isFetching = false; // one answer is awaited
    qint64 m_deafProcess = 0;  // the process that no channel leads to
    int m_generation = 0;
    bool m_loadIsDue = false;
    bool m_complete = false;
    bool m_isLoaded = false; // told by the page, and not passed on yet
};

} // namespace luma
