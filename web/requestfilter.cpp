// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/requestfilter.h"

#include "web/pagescheme.h"

#include <QUrl>

namespace luma {

namespace {

bool shapesTheLook(QWebEngineUrlRequestInfo::ResourceType type)
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
           request.requestMethod() == "GET" && shapesTheLook(request.resourceType());
}

} // namespace

void RequestFilter::interceptRequest(QWebEngineUrlRequestInfo& request)
{
    if (!isAllowed(request))
        request.block(true);
    else if (request.requestUrl().scheme().startsWith(QLatin1String("http")))
        request.setHttpHeader("Referer", {});
}

} // namespace luma
