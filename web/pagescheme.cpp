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

// Every page has a process of its own, whose scripts are the editor's: they are small, and their speed hardly counts. What
// the user has set counts more.
void makeScriptsSmall()
{
    constexpr const char* variable = "QTWEBENGINE_CHROMIUM_FLAGS";
    const QByteArray flags = qgetenv(variable);
    if (!flags.contains("--js-flags"))
        qputenv(variable, (flags + " --js-flags=--optimize-for-size").trimmed());
}

} // namespace

QByteArray PageScheme::name()
{
    return QByteArrayLiteral("luma");
}

void PageScheme::registerScheme()
{
    switchOffSandboxForRoot();
    makeScriptsSmall();
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
