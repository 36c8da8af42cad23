// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/pagescheme.h"

#include <QUrl>
#include <QWebEngineUrlScheme>

#include <unistd.h>

namespace luma {

namespace {

// Chromium refuses to start its sandbox as root.
void switchOffSandboxForRoot()
{
    if (::geteuid() == 0)
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
}

} // namespace

QByteArray PageScheme::name()
{
    return QByteArrayLiteral("luma");
}

void PageScheme::registerScheme()
{
    switchOffSandboxForRoot();
    QWebEngineUrlScheme scheme(name());
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    // Neither local (such a page could show file: addresses) nor secure (images under http: would be held
    // back as mixed content, and a site may well have some).
    scheme.setFlags(QWebEngineUrlScheme::CorsEnabled);
    QWebEngineUrlScheme::registerScheme(scheme);
}

bool PageScheme::isOfPage(const QUrl& url, const QString& page)
{
    return url.scheme().toLatin1() == name() && url.host() == page;
}

} // namespace luma
