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

void setEngineFlags(PageScheme::Network network)
{
    constexpr const char* variable = "QTWEBENGINE_CHROMIUM_FLAGS";
    QByteArray flags = qgetenv(variable);
    // An open quotation would swallow ours.
    if (flags.count('"') % 2 != 0)
        flags += '"';
    // Every page has a process of its own, whose scripts are the editor's: they are small, and their speed hardly counts. What
    // the user has set counts more.
    if (!flags.contains("--js-flags"))
        flags += " --js-flags=--optimize-for-size";
    // No page here has a use for WebRTC, and its datagrams pass no filter of requests.
    flags += " --force-webrtc-ip-handling-policy=disable_non_proxied_udp";
    // No name or address leads anywhere, and what might take none goes to a proxy that is nowhere, loopback included. Of a
    // switch that is there twice the last one counts.
    if (network == PageScheme::Network::Closed)
        flags += " --host-resolver-rules=\"MAP * ~NOTFOUND\" --proxy-server=http://nowhere.invalid:1"
                 " --proxy-bypass-list=<-loopback>";
    qputenv(variable, flags.trimmed());
}

} // namespace

QByteArray PageScheme::name()
{
    return QByteArrayLiteral("luma");
}

void PageScheme::registerScheme(Network network)
{
    switchOffSandboxForRoot();
    setEngineFlags(network);
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
