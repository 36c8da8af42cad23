// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/guardedpage.h"

#include <QWebEngineFullScreenRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>

namespace luma {

GuardedPage::GuardedPage(QWebEngineProfile& profile, QObject* parent) : QWebEnginePage(&profile, parent)
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

QStringList GuardedPage::chooseFiles(FileSelectionMode, const QStringList&, const QStringList&)
{
    return {};
}

} // namespace luma
