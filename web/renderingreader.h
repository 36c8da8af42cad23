// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <string_view>

namespace luma {

class EditorPage;

/// Reads the page's markup back when the page has changed. Changes that come while one reading and all that
/// follows from it is under way make one more reading, and readings are spaced by twice the time that the
/// last one took: typing into a big page stays fluent, and the last change is never left out. An answer of
/// a page that has been replaced meanwhile is dropped. Main thread.
class RenderingReader final : public QObject
{
    Q_OBJECT

public:
    /// `deliver` gets the root element's markup, UTF-8, and what the change is called; the name is empty when
    /// nothing but the user's keys may have made it.
    using Deliver = std::function<void(std::string_view markup, const QString& name)>;
    RenderingReader(EditorPage& page, Deliver deliver, QObject* parent);

    /// Reads nothing more of the page that is shown: it is about to be replaced by another.
    void stopUntilReady();

    /// Names what the script evaluated last changed, if it changed anything.
    void nameChange(const QString& name);

    /// Reads at once, and waits for it, when the page holds changes that were not delivered.
    void catchUp();

    /// The root element's markup as it is now, waiting for it; null when the page does not answer.
    [[nodiscard]] QString currentMarkup() const;

    [[nodiscard]] bool isUpToDate() const { return m_delivered >= m_told; }

signals:
    /// Everything told so far has been delivered.
    void upToDate();

private:
    void noteChange(int count);
    void schedule();
    void read();
    void takeAnswer(int generation, int count, const QString& markup);
    void deliverMarkup(const QString& markup, int count);
    [[nodiscard]] QString takeName(int count);
    void startOver();

    EditorPage& m_page;
    Deliver m_deliver;
    QTimer m_timer;
    QElapsedTimer m_clock;
    QElapsedTimer m_sinceLast; // runs from the last delivery on
    qint64 m_lastCost = 0;
    int m_told = 0;
    int m_delivered = 0;
    int m_named = 0; // the change that m_name is for; 0 without one
    QString m_name;
    bool m_reading = false;
    bool m_stopped = false;
};

} // namespace luma
