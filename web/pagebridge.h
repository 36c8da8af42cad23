// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonValue>
#include <QObject>
#include <QVariant>

namespace luma {

/// Receives the messages of the page-side scripts and emits each as a signal. What arrives here is not
/// trusted: messages with an unknown name or an unsuitable body are ignored. Main thread; published to the
/// page's web channel as "bridge".
class PageBridge final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE void post(const QString& name, const QJsonValue& body);

    /// The page at `address` has been parsed and the editor's scripts are loaded.
    Q_INVOKABLE void tellReady(const QString& address) { emit documentReady(address); }
    /// Its style sheets and images have been loaded or have failed. Comes after tellReady().
    Q_INVOKABLE void tellLoaded(const QString& address) { emit documentLoaded(address); }

    /// The messages that a page with a dead channel has kept: lists of a function's name, as above, and its
    /// arguments.
    void takeMessages(const QVariant& messages);

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
    /// The page has changed, for the `count`th time since it was shown.
    void mutationObserver(int count);
};

} // namespace luma
