// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/renderingreader.h"

#include "web/editorpage.h"
#include "web/scriptcall.h"

#include <algorithm>

namespace luma {

namespace {

constexpr qint64 shortestPause = 5; // milliseconds
constexpr qint64 longestPause = 1000;

} // namespace

const QString RenderingReader::markupScript = QStringLiteral("document.documentElement.outerHTML.toString()");

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

bool RenderingReader::canRead() const
{
    return !m_stopped && m_page.isComplete();
}

void RenderingReader::noteChange(int count)
{
    if (!canRead())
        return;
    m_told = std::max(m_told, count);
    schedule();
}

// Questions are answered in order, so this is the count right after the script.
void RenderingReader::nameChange(const QString& name)
{
    ScriptCall::ask(&m_page, QStringLiteral("countOfChanges()"), this,
                    [this, generation = m_page.generation(), name](const QVariant& answer) {
                        if (generation != m_page.generation() || answer.toInt() <= m_delivered)
                            return;
                        m_named = answer.toInt();
                        m_name = name;
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
    ScriptCall::ask(&m_page, markupScript, this,
                    [this, generation = m_page.generation(), count = m_told](const QVariant& answer) {
                        if (!canRead() || generation != m_page.generation())
                            return;
                        m_reading = false;
                        deliverMarkup(answer.toString(), count);
                        schedule();
                    });
}

void RenderingReader::deliverMarkup(const QString& markup, int count)
{
    if (count <= m_delivered)
        return;
    m_delivered = count;
    if (!markup.isEmpty())
        m_deliver(markup.toStdString(), takeName(count));
    m_lastCost = m_clock.elapsed();
    m_sinceLast.start();
    if (isUpToDate())
        emit upToDate();
}

void RenderingReader::catchUp(const std::function<void()>& then)
{
    if (!canRead()) {
        then();
        return;
    }
    m_clock.start();
    ScriptCall::ask(&m_page, QStringLiteral("markupSince(%1)").arg(m_delivered), this,
                    [this, generation = m_page.generation(), then](const QVariant& answer) {
                        const QVariantList changed = answer.toList();
                        if (changed.size() == 2 && canRead() && generation == m_page.generation()) {
                            const int count = changed.first().toInt();
                            m_told = std::max(m_told, count);
                            deliverMarkup(changed.last().toString(), count);
                        }
                        then();
                    });
}

} // namespace luma
