// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <string_view>

namespace luma {

class EditorPage;

/// Reads the page's markup back when the page has changed. Changes that arrive during one reading cause one
/// more, and readings are spaced by twice the time that the last one took, so typing into a big page stays
/// fluent and the last change is never missed. Answers from a page that has been replaced since are dropped.
/// Main thread.
class RenderingReader final : public QObject
{
    Q_OBJECT

public:
    /// `deliver` gets the root element's markup, UTF-8, and the change's name; the name is empty for changes
    /// that no script made.
    using Deliver = std::function<void(std::string_view markup, const QString& name)>;
    RenderingReader(EditorPage& page, Deliver deliver, QObject* parent);

    /// Stops reading the page that is shown, which is about to be replaced by another.
    void stopUntilReady();
    /// Whether the page shown is complete and being read.
    [[nodiscard]] bool canRead() const;

    /// Names the change made by the script evaluated last, if it made one.
    void nameChange(const QString& name);

    /// Delivers the changes that the page holds, without the usual pause, then runs `then`. Runs it at once if
    /// the page can't be read; not at all if the reader is deleted first.
    void catchUp(const std::function<void()>& then);

    [[nodiscard]] bool isUpToDate() const { return m_delivered >= m_told; }

    /// The script that gives the root element's markup.
    static const QString markupScript;

signals:
    /// Every change reported so far has been delivered.
    void upToDate();

private:
    void noteChange(int count);
    void schedule();
    void read();
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
    int m_named = 0; // the change that m_name belongs to; 0 for none
    QString m_name;
    bool m_reading = false;
    bool m_stopped = false;
};

} // namespace luma
