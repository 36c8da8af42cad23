// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/previewprofile.h"

#include "web/pagescheme.h"

#include <QWebEngineDownloadRequest>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>

namespace luma {

namespace {

// The engine's filter of requests does not see what goes over WebRTC, so documents have none, and pages that ask for it find
// another way. No script of ours runs in the document of a frame whose load is pending: there the closed network has to do.
constexpr auto removal = R"js('use strict';
for (const name of ['RTCPeerConnection', 'webkitRTCPeerConnection', 'RTCDataChannel', 'WebTransport'])
    Reflect.deleteProperty(self, name);
)js";

// The engine does not let fetch() use a scheme of ours (Qt 6.4), so files of the site are fetched in another way.
constexpr auto preparation = R"js('use strict';
{
    const engines = self.fetch;
    self.fetch = (resource, options) => {
        const url = new URL(resource instanceof Request ? resource.url : resource, document.baseURI);
        if (url.protocol !== 'luma:')
            return engines(resource, options);
        return new Promise((resolve) => {
            const request = new XMLHttpRequest();
            request.open('GET', url);
            request.responseType = 'blob';
            request.onload = () => resolve(new Response(request.response, { status: 200 }));
            request.onerror = () => resolve(new Response('', { status: 404, statusText: 'Not Found' }));
            request.send();
        });
    };
}
)js";

} // namespace

class PreviewProfile::Filter final : public QWebEngineUrlRequestInterceptor
{
public:
    explicit Filter(PreviewProfile& profile) : m_profile(profile) {}

    void interceptRequest(QWebEngineUrlRequestInfo& request) override
    {
        if (isInside(request.requestUrl()))
            return;
        request.block(true);
        emit m_profile.refused(request.requestUrl());
    }

private:
    PreviewProfile& m_profile;
};

PreviewProfile::PreviewProfile() : m_filter(std::make_unique<Filter>(*this))
{
    installUrlSchemeHandler(PageScheme::name(), &m_files);
    setUrlRequestInterceptor(m_filter.get());
    setHttpCacheType(NoCache);
    setPersistentCookiesPolicy(NoPersistentCookies);
    connect(&m_files, &SiteSchemeHandler::refused, this, &PreviewProfile::refused);
    connect(this, &QWebEngineProfile::downloadRequested, this, [this](QWebEngineDownloadRequest* download) {
        emit refused(download->url());
        download->cancel();
    });
    shutIn();
}

PreviewProfile::~PreviewProfile()
{
    setUrlRequestInterceptor(nullptr);
    removeAllUrlSchemeHandlers();
}

void PreviewProfile::shutIn()
{
    using Settings = QWebEngineSettings;
    for (const auto attribute :
         {Settings::JavascriptCanOpenWindows, Settings::JavascriptCanAccessClipboard,
          Settings::JavascriptCanPaste, Settings::LocalContentCanAccessFileUrls,
          Settings::LocalContentCanAccessRemoteUrls, Settings::HyperlinkAuditingEnabled,
          Settings::ErrorPageEnabled, Settings::PluginsEnabled, Settings::PdfViewerEnabled,
          Settings::FullScreenSupportEnabled, Settings::ScreenCaptureEnabled, Settings::AutoLoadIconsForPage,
          Settings::DnsPrefetchEnabled, Settings::NavigateOnDropEnabled,
          Settings::AllowRunningInsecureContent, Settings::AllowGeolocationOnInsecureOrigins})
        settings()->setAttribute(attribute, false);
    settings()->setAttribute(Settings::WebRTCPublicInterfacesOnly, true);
    settings()->setUnknownUrlSchemePolicy(Settings::DisallowUnknownUrlSchemes);
    addScript(removal, QWebEngineScript::DocumentCreation);
    addScript(removal, QWebEngineScript::DocumentReady);
    addScript(preparation, QWebEngineScript::DocumentCreation);
}

void PreviewProfile::addScript(const char* source, QWebEngineScript::InjectionPoint when)
{
    QWebEngineScript script;
    script.setSourceCode(QString::fromLatin1(source));
    script.setInjectionPoint(when);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(true);
    scripts()->insert(script);
}

bool PreviewProfile::isInside(const QUrl& url)
{
    return url.scheme().toLatin1() == PageScheme::name() || url.scheme() == QLatin1String("data") ||
           url.scheme() == QLatin1String("blob") || url.scheme() == QLatin1String("about");
}

} // namespace luma
