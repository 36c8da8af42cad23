// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/guardedpage.h"
#include "web/previewsource.h"

namespace luma {

class PreviewProfile;

/// A page with running scripts that stays in its site: every other navigation, window and dialog is refused. Main thread.
class PreviewPage final : public GuardedPage
{
    Q_OBJECT

public:
    /// The profile outlives the page.
    explicit PreviewPage(PreviewProfile& profile);

    /// Shows the page, with no answer that an earlier one has left.
    void show(const PreviewSource& page);

signals:
    /// The page wanted to go to this address; the user or the page wanted a window with it.
    void refused(const QUrl& url);
    void windowRefused(const QUrl& url);
    /// A dialog's text, which no dialog showed.
    void said(const QString& text);
    /// An error of a script or of the engine.
    void complained(const QString& text, int line);

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& preset,
                          QString* result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    PreviewProfile& m_profile;
    QString m_host;
    bool m_isReloadDue = false; // after a load that may have taken old files
};

} // namespace luma
