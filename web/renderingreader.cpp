// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/renderingreader.h"

#include "web/editorpage.h"
#include "web/pagedocument.h"
#include "web/scriptcall.h"

#include <QPointer>

#include <algorithm>
#include <array>
#include <utility>

namespace luma {

namespace {

constexpr qint64 shortestPause = 5; // milliseconds
constexpr qint64 longestPause = 1000;
constexpr int longRest = 1500; // milliseconds
constexpr int shortRest = 300; // while the whole page is read for each change

QString nameOf(const QString& inputType)
{
    using Name = std::pair<QLatin1String, const char*>;
    static const std::array<Name, 9> names = {{{QLatin1String("insertParagraph"), "Enter"},
                                               {QLatin1String("insertLineBreak"), "Line Break"},
                                               {QLatin1String("insertFromPaste"), "Paste"},
                                               {QLatin1String("insertFromDrop"), "Drop"},
                                               {QLatin1String("deleteByCut"), "Cut"},
                                               {QLatin1String("deleteByDrag"), "Drag"},
                                               {QLatin1String("formatBold"), "Bold"},
                                               {QLatin1String("formatItalic"), "Italic"},
                                               {QLatin1String("formatUnderline"), "Underline"}}};
    for (const auto& [type, name] : names) {
        if (inputType == type)
            return QObject::tr(name);
    }
    return inputType.startsWith(QLatin1String("delete")) ? QObject::tr("Delete") : QObject::tr("Typing");
}

} // namespace

const QString RenderingReader::markupScript = QStringLiteral("document.documentElement.outerHTML.toString()");

RenderingReader::RenderingReader(EditorPage& page, PageDocument& document, QObject* parent)
    : QObject(parent), m_page(page), m_document(document)
{
    m_timer.setSingleShot(true);
    m_rest.setSingleShot(true);
    m_rest.setInterval(longRest);
    connect(&m_timer, &QTimer::timeout, this, &RenderingReader::read);
    connect(&m_rest, &QTimer::timeout, this, &RenderingReader::check);
    connect(&page, &EditorPage::ready, this, [this] {
        startOver();
        check();
    });
    connect(&page, &EditorPage::processDied, this, &RenderingReader::startOver);
    connect(&page.bridge(), &PageBridge::mutationObserver, this, &RenderingReader::noteChange);
}

void RenderingReader::startOver()
{
    m_timer.stop();
    m_rest.stop();
    m_told = 0;
    m_delivered = 0;
    m_asking = 0;
    m_isSame = false;
    m_hasChanged = false;
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

// The answer of a page that has been replaced since is dropped. Being answered may close the window.
void RenderingReader::ask(const QString& script, const Answered& answered)
{
    ++m_asking;
    ScriptCall::ask(&m_page, script, this,
                    [this, generation = m_page.generation(), answered](const QVariant& answer) {
                        const bool isCurrent = canRead() && generation == m_page.generation();
                        if (isCurrent)
                            --m_asking;
                        const QPointer<RenderingReader> self = this;
                        answered(isCurrent ? answer : QVariant());
                        if (self && isCurrent)
                            schedule();
                    });
}

// While a question is under way, its answer says what has changed.
void RenderingReader::noteChange(const RenderingChange& change)
{
    if (!canRead())
        return;
    m_told = std::max(m_told, change.count);
    if (m_asking == 0 && change.count == m_delivered + 1)
        deliverChange(change, {});
    schedule();
}

void RenderingReader::schedule()
{
    if (m_told <= m_delivered || m_asking > 0 || m_timer.isActive())
        return;
    const qint64 rested = m_sinceLast.isValid() ? m_sinceLast.elapsed() : longestPause;
    m_timer.start(static_cast<int>(std::clamp(2 * m_lastCost - rested, shortestPause, longestPause)));
}

void RenderingReader::read()
{
    m_clock.start();
    ask(stateScript(QStringLiteral("changesSince")),
        [this](const QVariant& answer) { take(answer.toList(), {}, [] {}); });
}

// Of a page that is not followed change by change, the whole is asked for at once.
QString RenderingReader::stateScript(const QString& function) const
{
    return QStringLiteral("%1(%2, %3)")
        .arg(function, QString::number(m_delivered),
             m_isSame ? QStringLiteral("false") : QStringLiteral("true"));
}

void RenderingReader::take(const QVariantList& state, const QString& name, const std::function<void()>& then)
{
    const int count = deliver(state, name);
    if (count <= m_delivered || !canRead()) {
        then();
        return;
    }
    ask(QStringLiteral("wholePage()"), [this, name, then](const QVariant& whole) {
        deliver(whole.toList(), name);
        then();
    });
}

int RenderingReader::deliver(const QVariantList& state, const QString& name)
{
    const int count = state.value(0).toInt();
    m_told = std::max(m_told, count);
    const QVariant changes = state.value(1);
    if (changes.typeId() == QMetaType::QString)
        deliverMarkup(changes.toString(), count, name);
    const QVariantList messages = changes.toList();
    for (const QVariant& message : messages) {
        if (const auto change = PageBridge::changeFrom(QJsonValue::fromVariant(message)))
            deliverChange(*change, name);
    }
    return count;
}

void RenderingReader::deliverChange(const RenderingChange& change, const QString& name)
{
    if (!m_isSame || change.count != m_delivered + 1)
        return;
    m_clock.start();
    m_isSame = change.subtree &&
               m_document.takeChange(*change.subtree, name.isEmpty() ? nameOf(change.inputType) : name);
    if (m_isSame)
        noteDelivery(change.count);
}

void RenderingReader::deliverMarkup(const QString& markup, int count, const QString& name)
{
    if (count <= m_delivered || markup.isEmpty())
        return;
    m_document.setHTML(markup.toStdString(), name.isEmpty() ? nameOf({}) : name);
    m_isSame = false;
    noteDelivery(count);
}

void RenderingReader::noteDelivery(int count)
{
    m_delivered = count;
    m_hasChanged = true;
    m_lastCost = m_clock.elapsed();
    m_sinceLast.start();
    m_rest.start(m_isSame ? longRest : shortRest);
    if (isUpToDate())
        emit upToDate();
}

void RenderingReader::check()
{
    if (canRead())
        readFingerprint(true);
}

// A change on either side meanwhile makes the two incomparable; another check follows it.
void RenderingReader::readFingerprint(bool fromStart)
{
    const QString script =
        QStringLiteral("fingerprint(%1)").arg(fromStart ? QStringLiteral("true") : QStringLiteral("false"));
    ScriptCall::ask(&m_page, script, this, [this, generation = m_page.generation()](const QVariant& answer) {
        const QVariantList state = answer.toList();
        if (state.isEmpty() || !canRead() || generation != m_page.generation())
            return;
        if (!canCompare(state.first().toInt()))
            m_rest.start(longRest);
        else if (state.size() == 1)
            readFingerprint(false);
        else
            compare(state.last().toUInt());
    });
}

bool RenderingReader::canCompare(int count) const
{
    return count == m_delivered && m_told <= m_delivered && m_asking == 0;
}

void RenderingReader::compare(std::uint32_t fingerprint)
{
    const bool isSame = fingerprint == m_document.fingerprint();
    const bool wasSame = std::exchange(m_isSame, isSame);
    const bool hasChanged = std::exchange(m_hasChanged, false);
    if (isSame || !wasSame)
        return;
    if (!hasChanged) {
        emit differs();
        return;
    }
    m_delivered = -1; // takes the page as it is
    m_told = std::max(m_told, 0);
    schedule();
}

void RenderingReader::run(const QString& script, const QString& name, const Answered& answered)
{
    ScriptCall::ask(&m_page, script, this, [answered](const QVariant& answer) {
        if (answered)
            answered(answer);
    });
    if (canRead())
        ask(stateScript(QStringLiteral("stateSince")),
            [this, name](const QVariant& answer) { take(answer.toList().mid(1), name, [] {}); });
}

void RenderingReader::catchUp(const Then& then)
{
    if (!canRead()) {
        then({});
        return;
    }
    m_clock.start();
    ask(stateScript(QStringLiteral("stateSince")), [this, then](const QVariant& answer) {
        const QVariantList state = answer.toList();
        const auto keys = state.isEmpty() ? std::nullopt : std::optional(state.first().toInt());
        take(state.mid(1), {}, [then, keys] { then(keys); });
    });
}

void RenderingReader::send(const QByteArray& changes, Place place,
                           const std::function<void(bool isDone)>& done)
{
    if (!m_isSame || !canRead()) {
        done(false);
        return;
    }
    const QString script = QStringLiteral("applyChanges(%1, %2, %3)")
                               .arg(QString::number(m_delivered), QString::fromUtf8(changes),
                                    place == Place::Caret ? QStringLiteral("true") : QStringLiteral("false"));
    ask(script, [this, done](const QVariant& answer) {
        m_isSame = m_isSame && answer.toBool();
        m_rest.start(longRest);
        done(m_isSame);
    });
}

} // namespace luma
