// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/siteschemehandler.h"

#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineUrlRequestInterceptor>

#include <memory>

namespace luma {

/// The web engine's profile for one preview: nothing on disk, and no request but for the site's files. Main thread.
class PreviewProfile final : public QWebEngineProfile
{
    Q_OBJECT

public:
    PreviewProfile();
    ~PreviewProfile() override;

    [[nodiscard]] SiteSchemeHandler& files() { return m_files; }

    /// Whether an address leads to the site, or to what the page itself has made.
    static bool isInside(const QUrl& url);

signals:
    /// A request for this address was refused.
    void refused(const QUrl& url);

private:
    class Filter;
    void shutIn();
    void addScript(const char* source, QWebEngineScript::InjectionPoint when);

    SiteSchemeHandler m_files;
    std::unique_ptr<QWebEngineUrlRequestInterceptor> m_filter;
};

} // namespace luma
