// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/previewpage.h"

#include "web/editorprofile.h"
#include "web/pagescheme.h"
#include "web/previewprofile.h"

namespace luma {

PreviewPage::PreviewPage(PreviewProfile& profile)
    : GuardedPage(profile), m_profile(profile), m_host(EditorProfile::newHost())
{}

void PreviewPage::show(const QByteArray& markup, const SiteFolder& files)
{
    m_profile.files().serve(m_host, markup, files);
    // A load of the same address would not overtake one.
    if (isLoading())
        triggerAction(QWebEnginePage::Stop);
    load(SiteSchemeHandler::address(m_host, files.page()));
}

bool PreviewPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool isMainFrame)
{
    const bool isAllowed = isMainFrame ? PageScheme::isOfPage(url, m_host) : PreviewProfile::isInside(url);
    if (!isAllowed)
        emit refused(url);
    return isAllowed;
}

QWebEnginePage* PreviewPage::createWindow(WebWindowType)
{
    return nullptr;
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
