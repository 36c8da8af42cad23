// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"
#include "browser/browser.h"
#include "browser/browsercontroller.h"
#include "browser/browserlistview.h"
#include "browser/endpoint.h"
#include "browser/unavailablemounter.h"
#include "site/haldendoc.h"
#include "site/logview.h"
#include "tests/site/twofolders.h"

#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QTest>

namespace luma::test {

/// The window of a site between two local folders ("sending" and "receiving" of a TwoFolders), both
/// connected. The window deletes itself when it closes.
class SiteWindow final
{
public:
    explicit SiteWindow(const TwoFolders& folders) : SiteWindow(folders.sending(), folders.receiving()) {}
    SiteWindow(const std::filesystem::path& source, const std::filesystem::path& destination)
    {
        connectTo(*record->sourceDict(), source);
        connectTo(*record->destinationDict(), destination);
        HaldenDoc::Services services;
        services.mounter = std::make_shared<UnavailableMounter>();
        services.excludedFolders = [] { return "old, images"; };
        window = new HaldenDoc(record, std::move(services));
        window->windowDidLoad();
    }
    ~SiteWindow() { delete window; }
    SiteWindow(const SiteWindow&) = delete;
    SiteWindow& operator=(const SiteWindow&) = delete;

    bool isConnected() const { return source().rootNode() && destination().rootNode(); }
    BrowserController& source() const { return window->sourceBrowserController(); }
    BrowserController& destination() const { return window->destinationBrowserController(); }

    /// Of the source pane, or of the window.
    template <class Widget>
    Widget& find(const char* name) const
    {
        auto* const ofPane = source().widget()->findChild<Widget*>(QLatin1String(name));
        return ofPane ? *ofPane : *window->findChild<Widget*>(QLatin1String(name));
    }
    QString status() const { return find<QLabel>("progressPanelTextField1").text(); }
    QString log() const { return QString::fromUtf8(find<LogView>("progressPanelTextField2").log().text()); }
    bool isDone() const { return find<QPushButton>("progressPanelOKButton").isEnabled(); }

    /// The column of a pane.
    static BrowserListView& list(const BrowserController& pane, int column)
    {
        return *pane.widget()->findChild<BrowserListView*>(QStringLiteral("browserList%1").arg(column));
    }
    static QModelIndex item(const BrowserController& pane, int column, const char* name)
    {
        return pane.browser().model().childNamed(list(pane, column).rootIndex(), name);
    }

    /// Moves a drag over `target` at `row`, or below its rows, and drops it there when it is welcome: what
    /// would happen, Qt::IgnoreAction for nothing.
    static Qt::DropAction drop(BrowserListView& target, const QModelIndex& row, const QMimeData& data,
                               Qt::KeyboardModifiers modifiers = {})
    {
        const QPoint place = row.isValid()
                                 ? target.visualRect(row).center()
                                 : QPoint(target.viewport()->width() / 2, target.viewport()->height() - 3);
        const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
        QDragEnterEvent enter(place, all, &data, Qt::LeftButton, modifiers);
        QApplication::sendEvent(target.viewport(), &enter);
        QDragMoveEvent move(place, all, &data, Qt::LeftButton, modifiers);
        QApplication::sendEvent(target.viewport(), &move);
        if (!enter.isAccepted() || !move.isAccepted()) {
            QDragLeaveEvent leave;
            QApplication::sendEvent(target.viewport(), &leave);
            return Qt::IgnoreAction;
        }
        QDropEvent dropped(place, all, &data, Qt::LeftButton, modifiers);
        QApplication::sendEvent(target.viewport(), &dropped);
        return dropped.isAccepted() ? dropped.dropAction() : Qt::IgnoreAction;
    }

    /// The same with the selected rows of `from` dragged by the mouse.
    static Qt::DropAction dragAndDrop(BrowserListView& from, BrowserListView& target, const QModelIndex& row,
                                      Qt::KeyboardModifiers modifiers = {})
    {
        std::optional<Qt::DropAction> action;
        QCoreApplication::processEvents(); // columns that have just opened get their places
        // The platform without a screen has no drags of its own to wait in.
        const auto started = QObject::connect(&from, &BrowserListView::dragStarted, &target, [&] {
            const std::unique_ptr<QMimeData> data(
                from.model()->mimeData(from.selectionModel()->selectedRows()));
            action = drop(target, row, *data, modifiers);
        });
        const QPoint begin = from.visualRect(from.currentIndex()).center();
        QTest::mousePress(from.viewport(), Qt::LeftButton, {}, begin);
        for (const int distance : {4, 40}) {
            const QPoint place = begin + QPoint(distance, 0);
            QMouseEvent move(QEvent::MouseMove, place, from.viewport()->mapToGlobal(place), Qt::NoButton,
                             Qt::LeftButton, {});
            QApplication::sendEvent(from.viewport(), &move);
        }
        QTest::mouseRelease(from.viewport(), Qt::LeftButton, {}, begin);
        QObject::disconnect(started);
        return action.value();
    }

    std::shared_ptr<SiteRecord> record = std::make_shared<SiteRecord>(QVariantMap());
    QPointer<HaldenDoc> window;

private:
    static void connectTo(ObservedDictionary& side, const std::filesystem::path& folder)
    {
        side.setValue(endpoint::protocol, QString(endpoint::fileProtocol));
        side.setValue(endpoint::path, QString::fromStdString(folder.string()));
        side.setValue(endpoint::autoconnect, 1);
    }
};

} // namespace luma::test
