// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/scriptcall.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

#include <memory>
#include <utility>

namespace luma {

namespace {

constexpr int deliveryInterval = 10; // milliseconds
constexpr auto editorWorld = QWebEngineScript::ApplicationWorld;

/// A question that was asked and not answered yet. Shared with the engine's callback, which may come late.
struct Question
{
    QPointer<QObject> context;
    ScriptCall::Answered answered;
    QPointer<QObject> connections;

    void end(const QVariant& answer)
    {
        const auto receiver = std::exchange(answered, {});
        if (receiver && context)
            // From the event loop: inside its callbacks the engine answers no further question.
            QMetaObject::invokeMethod(
                context, [receiver, answer] { receiver(answer); }, Qt::QueuedConnection);
        if (connections)
            connections->deleteLater();
    }
};

/// Ends the question where the engine leaves it without an answer.
void watchForSilence(QWebEnginePage* page, const std::shared_ptr<Question>& question)
{
    auto* const connections = new QObject(page);
    question->connections = connections;
    QObject::connect(page, &QObject::destroyed, connections, [question] { question->end({}); });
    QObject::connect(page, &QWebEnginePage::renderProcessTerminated, connections,
                     [question] { question->end({}); });
    // If a question asked after a load has finished is answered first, the load has discarded ours.
    QObject::connect(page, &QWebEnginePage::loadFinished, connections, [page, question] {
        page->runJavaScript(QStringLiteral("0"), editorWorld,
                            [question](const QVariant&) { question->end({}); });
    });
}

} // namespace

void ScriptCall::run(QWebEnginePage* page, const QString& script)
{
    page->runJavaScript(script, editorWorld);
}

void ScriptCall::ask(QWebEnginePage* page, const QString& script, QObject* context, const Answered& answered)
{
    const auto question = std::make_shared<Question>(Question{context, answered, {}});
    // A page without a process never answers.
    if (page->renderProcessPid() == 0) {
        question->end({});
        return;
    }
    watchForSilence(page, question);
    page->runJavaScript(script, editorWorld, [question](const QVariant& answer) { question->end(answer); });
}

QVariant ScriptCall::wait(QWebEnginePage* page, const QString& script)
{
    QVariant answer;
    waitInLoop(page, [&](QObject* loop, const Done& done) {
        ask(page, script, loop, [&answer, done](const QVariant& given) {
            answer = given;
            done();
        });
    });
    return answer;
}

void ScriptCall::waitInLoop(const QObject* source,
                            const std::function<void(QObject* loop, const Done& done)>& begin)
{
    if (QCoreApplication::closingDown())
        return;
    QEventLoop loop;
    bool isDone = false;
    const auto end = [&] {
        isDone = true;
        loop.quit();
    };
    QObject::connect(source, &QObject::destroyed, &loop, end);
    // Called from within a posted event, Qt's event dispatcher may sleep on the engine's own posted event
    // until something else wakes it (seen with Qt 6.4 and GLib: one call in fifteen never returned).
    QTimer delivery;
    QObject::connect(&delivery, &QTimer::timeout, &loop, [] { QCoreApplication::sendPostedEvents(); });
    delivery.start(deliveryInterval);
    begin(&loop, end);
    if (!isDone)
        loop.exec();
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

std::vector<int> ScriptCall::path(const QVariant& answer)
{
    std::vector<int> path;
    const QVariantList steps = answer.toList();
    for (const QVariant& step : steps)
        path.push_back(step.toInt());
    return path;
}

QString quotedForScript(const QString& text)
{
    QString quoted;
    quoted.reserve(text.size());
    for (const QChar c : text) {
        const bool plain = c.unicode() >= 0x20 && c != u'\'' && c != u'\\' && c != u'<' && c != QChar(0x7f) &&
                           c != QChar(0x2028) && c != QChar(0x2029) && !c.isSurrogate();
        if (plain)
            quoted += c;
        else
            quoted += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
    return quoted;
}

QString scriptCall(const QString& function, const QString& argument)
{
    return function + QStringLiteral("('") + quotedForScript(argument) + QStringLiteral("')");
}

QString scriptCall(const QString& function, const QString& first, const QString& second)
{
    return function + QStringLiteral("('") + quotedForScript(first) + QStringLiteral("', '") +
           quotedForScript(second) + QStringLiteral("')");
}

} // namespace luma
