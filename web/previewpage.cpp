// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/previewpage.h"

#include "web/editorprofile.h"
#include "web/pagescheme.h"
#include "web/previewprofile.h"

#include <QWebEngineFullScreenRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>

namespace luma {

PreviewPage::PreviewPage(PreviewProfile& profile)
    : QWebEnginePage(&profile), m_profile(profile), m_host(EditorProfile::newHost())
{
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this,
            [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
}

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

QStringList PreviewPage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&)
{
    return {};
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
