// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/pagebridge.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QUuid>

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

std::optional<SubtreeChange> subtreeChange(const QJsonValue& body)
{
    const auto path = elementPath(body[QLatin1String("path")]);
    const QJsonValue markup = body[QLatin1String("markup")];
    if (!path || !markup.isString())
        return {};
    SubtreeChange change;
    change.path.assign(path->begin(), path->end());
    change.name = body[QLatin1String("name")].toString().toStdString();
    change.before = body[QLatin1String("before")].toInt(-1);
    change.after = body[QLatin1String("after")].toInt(-1);
    change.markup = markup.toString().toStdString();
    change.elements = body[QLatin1String("elements")].toInt(-1);
    return change;
}

} // namespace

std::optional<RenderingChange> PageBridge::changeFrom(const QJsonValue& body)
{
    const QJsonArray parts = body.toArray();
    const int count = parts.at(0).toInt(-1);
    if (count <= 0)
        return {};
    return RenderingChange{count, subtreeChange(parts.at(1)), parts.at(2).toString()};
}

QString PageBridge::secret()
{
    static const QString value = QUuid::createUuid().toString(QUuid::WithoutBraces);
    return value;
}

void PageBridge::post(const QString& name, const QJsonValue& body)
{
    if (name == QLatin1String("callback_text") && body.isString()) {
        emit callbackText(body.toString());
    } else if (name == QLatin1String("mouseEvent_text") && body.isString()) {
        emit mouseEventText(body.toString());
    } else if (name == QLatin1String("activeElementHTML")) {
        if (const auto path = elementPath(body))
            emit activeElementHTML(*path);
    } else if (name == QLatin1String("mutationObserver")) {
        if (const auto change = changeFrom(body))
            emit mutationObserver(*change);
    } else if (name == QLatin1String("formats") && body.isArray()) {
        emit formats(body.toVariant().toStringList());
    } else if (name == QLatin1String("hover")) {
        emit hover(elementPath(body));
    } else if (name == QLatin1String("boxMoved")) {
        emit boxMoved();
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
