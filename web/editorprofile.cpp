// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/editorprofile.h"

#include "web/pagescheme.h"

#include <QUrl>
#include <QWebEngineCookieStore>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>

namespace luma {

namespace {

bool determinesLooks(QWebEngineUrlRequestInfo::ResourceType type)
{
    switch (type) {
    case QWebEngineUrlRequestInfo::ResourceTypeStylesheet:
    case QWebEngineUrlRequestInfo::ResourceTypeImage:
    case QWebEngineUrlRequestInfo::ResourceTypeFontResource:
    case QWebEngineUrlRequestInfo::ResourceTypeMedia:
        return true;
    default:
        return false;
    }
}

bool isAllowed(const QWebEngineUrlRequestInfo& request)
{
    const QString scheme = request.requestUrl().scheme();
    if (scheme.toLatin1() == PageScheme::name() || scheme == QLatin1String("data"))
        return true;
    if (scheme == QLatin1String("devtools"))
        return request.firstPartyUrl().scheme() == scheme ||
               request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
    return (scheme == QLatin1String("http") || scheme == QLatin1String("https")) &&
           request.requestMethod() == "GET" && determinesLooks(request.resourceType());
}

/// What a page in the editor may fetch: its own files through the private scheme and, over http and https,
/// whatever determines its looks (style sheets, images, fonts, sound and video), without cookies and referrer.
/// Scripts, frames, pings and all other schemes, above all file:, are refused: a page being edited runs
/// nothing and reads nothing outside its site.
class RequestFilter final : public QWebEngineUrlRequestInterceptor
{
public:
    void interceptRequest(QWebEngineUrlRequestInfo& request) override
    {
        if (!isAllowed(request))
            request.block(true);
        else if (request.requestUrl().scheme().startsWith(QLatin1String("http")))
            request.setHttpHeader("Referer", {});
    }
};

} // namespace

std::shared_ptr<EditorProfile> EditorProfile::shared()
{
    static std::weak_ptr<EditorProfile> current;
    auto profile = current.lock();
    if (!profile) {
        SpellCheck::preparePath();
        profile = std::make_shared<EditorProfile>();
        current = profile;
    }
    return profile;
}

EditorProfile::EditorProfile() : m_filter(std::make_unique<RequestFilter>())
{
    installUrlSchemeHandler(PageScheme::name(), &m_files);
    setUrlRequestInterceptor(m_filter.get());
    // clearHttpCache() is of no use: it replaces the engine's network context, and no page that is open or just loading
    // gets anything over http from then on (seen with Qt 6.4).
    setHttpCacheType(NoCache);
    setPersistentCookiesPolicy(NoPersistentCookies);
    cookieStore()->setCookieFilter([](const QWebEngineCookieStore::FilterRequest&) { return false; });
    switchOffFeatures();
}

EditorProfile::~EditorProfile()
{
    setUrlRequestInterceptor(nullptr);
    removeAllUrlSchemeHandlers();
}

QString EditorProfile::newHost()
{
    static int count = 0;
    return QStringLiteral("page%1").arg(++count);
}

void EditorProfile::switchOffFeatures()
{
    using Settings = QWebEngineSettings;
    for (const auto attribute :
         {Settings::JavascriptEnabled, Settings::JavascriptCanOpenWindows, Settings::LocalStorageEnabled,
          Settings::LocalContentCanAccessFileUrls, Settings::LocalContentCanAccessRemoteUrls,
          Settings::HyperlinkAuditingEnabled, Settings::ErrorPageEnabled, Settings::PluginsEnabled,
          Settings::PdfViewerEnabled, Settings::FullScreenSupportEnabled, Settings::ScreenCaptureEnabled,
          Settings::AutoLoadIconsForPage, Settings::DnsPrefetchEnabled, Settings::NavigateOnDropEnabled,
          Settings::FocusOnNavigationEnabled, Settings::AllowRunningInsecureContent})
        settings()->setAttribute(attribute, false);
    settings()->setAttribute(Settings::PlaybackRequiresUserGesture, true);
    // Lets links to mail addresses reach the page, which decides.
    settings()->setUnknownUrlSchemePolicy(Settings::AllowAllUnknownUrlSchemes);
}

} // namespace luma
