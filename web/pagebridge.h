// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonValue>
#include <QObject>
#include <QVariant>

namespace luma {

/// The page's end of the script bridge: page-side scripts post messages by name, and each comes out as a
/// signal. A message of another name, or with a body that is not what its name asks for, is ignored: what
/// arrives here is not to be trusted. Main thread; published to the page's web channel as "bridge".
class PageBridge final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    Q_INVOKABLE void post(const QString& name, const QJsonValue& body);

    /// The page at `address` has been read to its end and the editor's scripts stand.
    Q_INVOKABLE void tellReady(const QString& address) { emit documentReady(address); }
    /// So have its sheets and images, or they failed. Comes after tellReady().
    Q_INVOKABLE void tellLoaded(const QString& address) { emit documentLoaded(address); }

    /// What the page sent while its channel was dead: lists of a function's name, as above, and its
    /// arguments.
    void takeMessages(const QVariant& messages);

signals:
    void documentReady(const QString& address);
    void documentLoaded(const QString& address);
    /// Text for the element that is selected in the outline.
    void callbackText(const QString& text);
    /// What lies under the mouse, for the information text.
    void mouseEventText(const QString& text);
    /// The element under the caret: for each step from the root element on, the position among the element
    /// children. Empty means the root element.
    void activeElementHTML(const QList<int>& path);
    /// The page changed, for the `count`th time since it was shown.
    void mutationObserver(int count);
};

} // namespace luma
