// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/pagebridge.h"

#include <QJsonArray>

#include <optional>

namespace luma {

namespace {

std::optional<QList<int>> elementPath(const QJsonValue& body)
{
    if (!body.isArray())
        return {};
    QList<int> path;
    const QJsonArray steps = body.toArray();
    for (const auto& step : steps) {
        const int position = step.toInt(-1);
        if (position < 0)
            return {};
        path.append(position);
    }
    return path;
}

} // namespace

void PageBridge::post(const QString& name, const QJsonValue& body)
{
    if (name == QLatin1String("callback_text") && body.isString()) {
        emit callbackText(body.toString());
    } else if (name == QLatin1String("mouseEvent_text") && body.isString()) {
        emit mouseEventText(body.toString());
    } else if (name == QLatin1String("activeElementHTML")) {
        if (const auto path = elementPath(body))
            emit activeElementHTML(*path);
    } else if (name == QLatin1String("mutationObserver") && body.toInt(-1) > 0) {
        emit mutationObserver(body.toInt());
    }
}

void PageBridge::takeMessages(const QVariant& messages)
{
    const QVariantList list = messages.toList();
    for (const QVariant& each : list) {
        const QVariantList message = each.toList();
        const QString function = message.value(0).toString();
        if (function == QLatin1String("post"))
            post(message.value(1).toString(), QJsonValue::fromVariant(message.value(2)));
        else if (function == QLatin1String("tellReady"))
            tellReady(message.value(1).toString());
        else if (function == QLatin1String("tellLoaded"))
            tellLoaded(message.value(1).toString());
    }
}

} // namespace luma
