// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/scriptcall.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <memory>

namespace luma {

namespace {

constexpr int deliveryInterval = 10; // milliseconds
constexpr auto editorWorld = QWebEngineScript::ApplicationWorld;

// Shared with the engine's callback, which may come long after the waiting has ended.
struct Wait
{
    QEventLoop* loop = nullptr;
    QVariant answer;
    bool ended = false;

    void end()
    {
        ended = true;
        if (loop)
            loop->quit();
    }
};

// Questions are answered in their order. When one asked after a load has finished is answered first, the load
// has swallowed ours.
void endWhenSwallowed(QWebEnginePage* page, const std::shared_ptr<Wait>& wait)
{
    page->runJavaScript(QStringLiteral("0"), editorWorld, [wait](const QVariant&) { wait->end(); });
}

} // namespace

void ScriptCall::run(QWebEnginePage* page, const QString& script)
{
    page->runJavaScript(script, editorWorld);
}

void ScriptCall::run(QWebEnginePage* page, const QString& script,
                     const std::function<void(const QVariant&)>& answered)
{
    page->runJavaScript(script, editorWorld, answered);
}

QVariant ScriptCall::wait(QWebEnginePage* page, const QString& script)
{
    // A page without a process never answers.
    if (!page || page->renderProcessPid() == 0 || QCoreApplication::closingDown())
        return {};
    const auto wait = std::make_shared<Wait>();
    QEventLoop loop;
    wait->loop = &loop;
    QObject::connect(page, &QObject::destroyed, &loop, [&] { wait->end(); });
    QObject::connect(page, &QWebEnginePage::renderProcessTerminated, &loop, [&] { wait->end(); });
    QObject::connect(page, &QWebEnginePage::loadFinished, &loop, [&] { endWhenSwallowed(page, wait); });
    page->runJavaScript(script, editorWorld, [wait](const QVariant& answer) {
        if (!wait->ended)
            wait->answer = answer;
        wait->end();
    });
    // Called from within a posted event, Qt's event dispatcher may sleep on the engine's own posted event
    // until something else wakes it (seen with Qt 6.4 and GLib: one call in fifteen never returned).
    QTimer delivery;
    QObject::connect(&delivery, &QTimer::timeout, &loop, [] { QCoreApplication::sendPostedEvents(); });
    delivery.start(deliveryInterval);
    if (!wait->ended)
        loop.exec();
    wait->ended = true;
    wait->loop = nullptr;
    return wait->answer;
}

std::optional<QStringList> ScriptCall::strings(const QVariant& answer)
{
    if (answer.typeId() != QMetaType::QVariantList)
        return {};
    QStringList strings;
    const QVariantList list = answer.toList();
    for (const QVariant& each : list) {
        if (each.typeId() != QMetaType::QString)
            return {};
        strings.append(each.toString());
    }
    return strings;
}

} // namespace luma
