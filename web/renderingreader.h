// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/pagebridge.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>

namespace luma {

class EditorPage;
class PageDocument;

/// Hands what changes in the page to the document, change by change as the page tells them. The page's messages are
/// not trusted: each has to fit the tree, and where one says too little or does not fit, the whole page is read and
/// compared. A page is followed change by change only while its fingerprint was last seen equal to the tree's, which
/// is checked again whenever nothing has changed for a while. Readings of the whole page are spaced by twice the time
/// that the last one took, so typing stays fluent, and the last change is never missed. Answers from a page that has
/// been replaced since are dropped. Main thread.
class RenderingReader final : public QObject
{
    Q_OBJECT

public:
    /// Page and document outlive it.
    RenderingReader(EditorPage& page, PageDocument& document, QObject* parent);

    /// Stops reading the page that is shown, which is about to be replaced by another.
    void stopUntilReady();
    /// Whether the page shown is complete and being read.
    [[nodiscard]] bool canRead() const;

    /// Evaluates a script; the change that it makes gets the name in the undo history. `answered` gets its answer.
    using Answered = std::function<void(const QVariant& answer)>;
    void run(const QString& script, const QString& name, const Answered& answered = {});

    /// Delivers the changes that the page holds, then calls `then` with the number of keys that the page has received.
    /// With no number, and at once, if the page can't be read; not at all if the reader is deleted first.
    using Then = std::function<void(std::optional<int> keys)>;
    void catchUp(const Then& then);

    /// Makes the page repeat changes of the tree (TreeChanges::json), and tells whether it did; if not, it has to be
    /// shown anew. Refused if the page's fingerprint was not the tree's before. Place::Caret sets the caret there.
    enum class Place { Keep, Caret };
    void send(const QByteArray& changes, Place place, const std::function<void(bool isDone)>& done);

    /// Whether page and tree were last seen equal, so that each follows the other change by change.
    [[nodiscard]] bool isFollowing() const { return m_isSame && canRead(); }
    [[nodiscard]] bool isUpToDate() const { return m_delivered >= m_told; }

    /// The script that gives the root element's markup.
    static const QString markupScript;

signals:
    /// Every change reported so far has been delivered.
    void upToDate();
    /// The page repeated a change of the tree, but is not what the tree is.
    void differs();

private:
    void noteChange(const RenderingChange& change);
    void schedule();
    void read();
    void check();
    void readFingerprint(bool fromStart);
    [[nodiscard]] bool canCompare(int count) const;
    void compare(std::uint32_t fingerprint);
    [[nodiscard]] QString stateScript(const QString& function) const;
    /// Delivers the answer of changesSince(); reads the whole page where that does not fit, then calls `then`. The name
    /// is that of a script's change.
    void take(const QVariantList& state, const QString& name, const std::function<void()>& then);
    /// Gives the number of changes that the page had made.
    int deliver(const QVariantList& state, const QString& name);
    void deliverChange(const RenderingChange& change, const QString& name);
    void deliverMarkup(const QString& markup, int count, const QString& name);
    void noteDelivery(int count);
    void startOver();
    void ask(const QString& script, const Answered& answered);

    EditorPage& m_page;
    PageDocument& m_document;
    QTimer m_timer; // until the page is read
    QTimer m_rest;  // until it is compared with the tree
    QElapsedTimer m_clock;
    QElapsedTimer m_sinceLast; // runs from the last delivery on
    qint64 m_lastCost = 0;
    int m_told = 0;
    int m_delivered = 0;
    int m_asking = 0;          // questions whose answers will tell the changes, or replace the page's
    bool m_isSame = false;     // page and tree, when last compared, and nothing has failed since
    bool m_hasChanged = false; // the page, on its own, since then
    bool m_stopped = false;
};

} // namespace luma
