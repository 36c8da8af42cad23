// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/renderingreader.h"

#include "web/editorpage.h"
#include "web/scriptcall.h"

#include <QPointer>

#include <algorithm>

namespace luma {

namespace {

const QString outerHTML = QStringLiteral("document.documentElement.outerHTML.toString()");
constexpr qint64 shortestPause = 5; // milliseconds
constexpr qint64 longestPause = 1000;

} // namespace

RenderingReader::RenderingReader(EditorPage& page, Deliver deliver, QObject* parent)
    : QObject(parent), m_page(page), m_deliver(std::move(deliver))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &RenderingReader::read);
    connect(&page, &EditorPage::ready, this, &RenderingReader::startOver);
    connect(&page, &EditorPage::processDied, this, &RenderingReader::startOver);
    connect(&page.bridge(), &PageBridge::mutationObserver, this, &RenderingReader::noteChange);
}

void RenderingReader::startOver()
{
    m_timer.stop();
    m_told = 0;
    m_delivered = 0;
    m_named = 0;
    m_reading = false;
    m_stopped = false;
}

void RenderingReader::stopUntilReady()
{
    startOver();
    m_stopped = true;
}

void RenderingReader::noteChange(int count)
{
    // While a page is being replaced its last words are not heard any more.
    if (m_stopped || !m_page.isComplete())
        return;
    m_told = std::max(m_told, count);
    schedule();
}

// Questions are answered in their order: the count is of the moment after the script.
void RenderingReader::nameChange(const QString& name)
{
    const QPointer<RenderingReader> self = this;
    ScriptCall::run(&m_page, QStringLiteral("countOfChanges()"),
                    [self, generation = m_page.generation(), name](const QVariant& answer) {
                        if (!self || generation != self->m_page.generation() ||
                            answer.toInt() <= self->m_delivered)
                            return;
                        self->m_named = answer.toInt();
                        self->m_name = name;
                    });
}

QString RenderingReader::takeName(int count)
{
    if (m_named == 0 || count < m_named)
        return {};
    m_named = 0;
    return m_name;
}

void RenderingReader::schedule()
{
    if (m_told <= m_delivered || m_reading || m_timer.isActive())
        return;
    const qint64 rested = m_sinceLast.isValid() ? m_sinceLast.elapsed() : longestPause;
    m_timer.start(static_cast<int>(std::clamp(2 * m_lastCost - rested, shortestPause, longestPause)));
}

void RenderingReader::read()
{
    m_reading = true;
    m_clock.start();
    const QPointer<RenderingReader> self = this;
    ScriptCall::run(&m_page, outerHTML,
                    [self, generation = m_page.generation(), count = m_told](const QVariant& answer) {
                        if (!self)
                            return;
                        // Outside of the engine's work, as the document may want to ask the page something.
                        QMetaObject::invokeMethod(
                            self,
                            [self, generation, count, markup = answer.toString()] {
                                self->takeAnswer(generation, count, markup);
                            },
                            Qt::QueuedConnection);
                    });
}

void RenderingReader::takeAnswer(int generation, int count, const QString& markup)
{
    if (m_stopped || generation != m_page.generation() || !m_page.isComplete())
        return;
    m_reading = false;
    const QPointer<RenderingReader> self = this;
    deliverMarkup(markup, count);
    if (self)
        schedule();
}

void RenderingReader::deliverMarkup(const QString& markup, int count)
{
    if (count <= m_delivered)
        return;
    m_delivered = count;
    const QPointer<RenderingReader> self = this;
    if (!markup.isEmpty())
        m_deliver(markup.toStdString(), takeName(count));
    if (!self)
        return;
    m_lastCost = m_clock.isValid() ? m_clock.elapsed() : 0;
    m_sinceLast.start();
    if (isUpToDate())
        emit upToDate();
}

void RenderingReader::catchUp()
{
    if (m_stopped || !m_page.isComplete())
        return;
    const QPointer<RenderingReader> self = this;
    const int generation = m_page.generation();
    const int count = ScriptCall::wait(&m_page, QStringLiteral("countOfChanges()")).toInt();
    if (!self || m_stopped || count <= m_delivered || generation != m_page.generation())
        return;
    const QString markup = currentMarkup();
    if (!self || m_stopped || generation != m_page.generation())
        return;
    m_told = std::max(m_told, count);
    deliverMarkup(markup, count);
}

QString RenderingReader::currentMarkup() const
{
    return m_page.isComplete() ? ScriptCall::wait(&m_page, outerHTML).toString() : QString();
}

} // namespace luma
