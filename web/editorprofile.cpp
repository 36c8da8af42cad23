// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/editorprofile.h"

#include "web/pagescheme.h"

#include <QWebEngineCookieStore>
#include <QWebEngineSettings>

namespace luma {

std::shared_ptr<EditorProfile> EditorProfile::shared()
{
    static std::weak_ptr<EditorProfile> current;
    auto profile = current.lock();
    if (!profile) {
        profile = std::make_shared<EditorProfile>();
        current = profile;
    }
    return profile;
}

EditorProfile::EditorProfile()
{
    installUrlSchemeHandler(PageScheme::name(), &m_files);
    setUrlRequestInterceptor(&m_filter);
    setHttpCacheType(MemoryHttpCache);
    setPersistentCookiesPolicy(NoPersistentCookies);
    cookieStore()->setCookieFilter([](const QWebEngineCookieStore::FilterRequest&) { return false; });
    switchOffWhatAnEditorNeedsNot();
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

void EditorProfile::switchOffWhatAnEditorNeedsNot()
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
    // So that a link to a mail address gets as far as the page, which decides.
    settings()->setUnknownUrlSchemePolicy(Settings::AllowAllUnknownUrlSchemes);
}

} // namespace luma
