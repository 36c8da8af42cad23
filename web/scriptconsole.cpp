// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/scriptconsole.h"

#include "base/files.h"
#include "ui_ScriptConsole.h"
#include "web/codehighlighter.h"

#include <QDateTime>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QShortcut>
#include <QStandardPaths>

namespace luma {

namespace {

QString answerText(const QVariant& answer)
{
    if (!answer.isValid())
        return {};
    const QJsonValue json = QJsonValue::fromVariant(answer);
    if (json.isArray())
        return QString::fromUtf8(QJsonDocument(json.toArray()).toJson());
    if (json.isObject())
        return QString::fromUtf8(QJsonDocument(json.toObject()).toJson());
    return json.isNull() ? QStringLiteral("null") : answer.toString();
}

} // namespace

ScriptConsole::ScriptConsole(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::ScriptConsole>())
{
    m_ui->setupUi(this);
    new CodeHighlighter(CodeHighlighter::Language::Script, m_ui->jsSourceField);
    connect(m_ui->runJSButton, &QPushButton::clicked, this, &ScriptConsole::runJS);
    connect(m_ui->saveJSButton, &QPushButton::clicked, this, &ScriptConsole::saveJS);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this), &QShortcut::activated, this,
            &ScriptConsole::runJS);
}

ScriptConsole::~ScriptConsole() = default;

void ScriptConsole::runJS()
{
    m_ui->jsResultField->clear();
    emit runRequested(CodeEdit::textIn(*m_ui->jsSourceField));
}

void ScriptConsole::showAnswer(const QVariant& answer)
{
    if (const QString text = answerText(answer); !text.isEmpty())
        m_ui->jsResultField->appendPlainText(text);
}

void ScriptConsole::addMessage(const QString& message)
{
    if (isVisible())
        m_ui->jsResultField->appendPlainText(message);
}

QString ScriptConsole::scriptFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/scripts");
}

void ScriptConsole::saveJS()
{
    const QString name = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss.zzz")) +
                         QStringLiteral(".js");
    const QString path = scriptFolder() + u'/' + name;
    QDir().mkpath(scriptFolder());
    const auto written = writeFile(path.toStdString(), CodeEdit::textIn(*m_ui->jsSourceField).toStdString());
    m_ui->jsResultField->setPlainText(written ? tr("Saved as %1").arg(path)
                                              : QString::fromStdString(written.error().text));
}

} // namespace luma
