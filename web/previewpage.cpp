// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/previewpage.h"

#include "base/pathtext.h"
#include "web/editorprofile.h"
#include "web/pagescheme.h"
#include "web/previewprofile.h"

#include <QWebEngineNewWindowRequest>

#include <utility>

namespace fs = std::filesystem;

namespace luma {

PreviewPage::PreviewPage(PreviewProfile& profile)
    : GuardedPage(profile), m_profile(profile), m_host(EditorProfile::newHost())
{
    connect(this, &QWebEnginePage::loadFinished, this, [this](bool isDone) {
        if (isDone && std::exchange(m_isReloadDue, false))
            triggerAction(QWebEnginePage::ReloadAndBypassCache);
    });
    connect(
        this, &QWebEnginePage::newWindowRequested, this,
        [this](const QWebEngineNewWindowRequest& request) { emit windowRefused(request.requestedUrl()); });
}

void PreviewPage::show(const PreviewSource& page)
{
    SiteSchemeHandler& files = m_profile.files();
    files.withdraw(m_host);
    files.serve(m_host, page.markup, page.files);
    files.serveFolders(m_host, page.indexNames);
    for (auto draft = page.drafts.begin(); draft != page.drafts.end(); ++draft) {
        if (const fs::path file = pathOf(draft.key()); page.files.realPath(file))
            files.serveDraft(m_host, file, draft.value());
    }
    for (auto other = page.pages.begin(); other != page.pages.end(); ++other) {
        if (const fs::path file = pathOf(other.key()); page.files.realPath(file))
            files.servePage(m_host, file, other.value());
    }
    // A load of the same address would not overtake one.
    if (isLoading())
        triggerAction(QWebEnginePage::Stop);
    // Only a reload makes the engine ask again for files that it has in memory.
    const QUrl address = SiteSchemeHandler::address(m_host, page.files.page());
    m_isReloadDue = url().adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment) != address && !url().isEmpty();
    if (m_isReloadDue || url().isEmpty())
        load(address);
    else
        triggerAction(QWebEnginePage::ReloadAndBypassCache);
}

bool PreviewPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool isMainFrame)
{
    const bool isAllowed = isMainFrame ? PageScheme::isOfPage(url, m_host) : PreviewProfile::isInside(url);
    if (!isAllowed)
        emit refused(url);
    return isAllowed;
}

void PreviewPage::javaScriptAlert(const QUrl&, const QString& message)
{
    emit said(message);
}

bool PreviewPage::javaScriptConfirm(const QUrl&, const QString& message)
{
    emit said(message);
    return true;
}

bool PreviewPage::javaScriptPrompt(const QUrl&, const QString& message, const QString& preset,
                                   QString* result)
{
    emit said(message);
    *result = preset;
    return true;
}

void PreviewPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                           int line, const QString&)
{
    if (level == ErrorMessageLevel)
        emit complained(message, line);
}

} // namespace luma
