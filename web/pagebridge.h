// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/subtreechange.h"

#include <QJsonValue>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <optional>

namespace luma {

/// What the page tells of a change.
struct RenderingChange
{
    int count = 0;                        ///< of all changes since the page was shown
    std::optional<SubtreeChange> subtree; ///< what changed; nothing: the whole page has to be read
    QString inputType; ///< of the user's action (Input Events, inputType); empty for a script's
};

/// Receives the messages of the page-side scripts and emits each as a signal. What arrives here is not
/// trusted: messages with an unknown name or an unsuitable body are ignored. Main thread; published to the
/// page's web channel as "bridge".
class PageBridge final : public QObject
{
    Q_OBJECT
    /// What the scripts know each other's markup by on the clipboard: one for all pages, another at each start.
    Q_PROPERTY(QString secret READ secret CONSTANT)

public:
    using QObject::QObject;

    [[nodiscard]] static QString secret();

    Q_INVOKABLE void post(const QString& name, const QJsonValue& body);

    /// The page at `address` has been parsed and the editor's scripts are loaded.
    Q_INVOKABLE void tellReady(const QString& address) { emit documentReady(address); }
    /// Its style sheets and images have been loaded or have failed. Comes after tellReady().
    Q_INVOKABLE void tellLoaded(const QString& address) { emit documentLoaded(address); }

    /// The messages that a page with a dead channel has kept: lists of a function's name, as above, and its
    /// arguments.
    void takeMessages(const QVariant& messages);

    /// The body of such a message as a change; nothing if it is none.
    static std::optional<RenderingChange> changeFrom(const QJsonValue& body);

signals:
    void documentReady(const QString& address);
    void documentLoaded(const QString& address);
    /// Text for the element selected in the outline.
    void callbackText(const QString& text);
    /// What is under the mouse, for the information text.
    void mouseEventText(const QString& text);
    /// The element at the caret: for each step down from the root element, the position among the element
    /// children. Empty means the root element.
    void activeElementHTML(const QList<int>& path);
    void mutationObserver(const RenderingChange& change);
    /// The titles of the text styles and of the alignment at the selection, as in the menus.
    void formats(const QStringList& titles);
    /// The element under the mouse while Control is held, as for activeElementHTML; nothing when there is none any more.
    void hover(const std::optional<QList<int>>& path);
    /// The element with handles (SizeHandles) may be shown elsewhere now.
    void boxMoved();
};

} // namespace luma
