// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"
#include "browser/browser.h"
#include "browser/browsercontroller.h"
#include "browser/browserlistview.h"
#include "browser/endpoint.h"
#include "browser/logview.h"
#include "site/haldendoc.h"
#include "tests/site/twofolders.h"
#include "tests/support/mainthread.h"
#include "tests/support/unavailablemounter.h"

#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <memory>
#include <optional>

namespace luma::test {

/// A site's real window, driven by the names of its widgets. Closes it at its end.
class SiteWindow final
{
public:
    /// Between the two local folders, connected. Links are read by the letter.
    explicit SiteWindow(const TwoFolders& folders) : SiteWindow(folders.sending(), folders.receiving()) {}
    SiteWindow(const std::filesystem::path& source, const std::filesystem::path& destination)
        : SiteWindow(std::make_shared<SiteRecord>(QVariantMap{{"sourceDict", localFolder(source)},
                                                              {"destinationDict", localFolder(destination)}}),
                     {.remoteLogin = {},
                      .runProgram = {},
                      .mounter = std::make_shared<UnavailableMounter>(),
                      .reportChoices = [] {
                          return ReportChoices{.linkRules = LinkRules::Letter,
                                               .excludedFolders = "old, images"};
                      }})
    {
        if (!QTest::qWaitFor([this] { return isConnected(); }, 60'000))
            qFatal("the panes did not connect");
    }
    SiteWindow(const std::shared_ptr<SiteRecord>& record, HaldenDoc::Services services,
               const QByteArray& layout = {})
        : window(new HaldenDoc(record, std::move(services)))
    {
        window->resize(1000, 760);
        if (!layout.isEmpty())
            window->restoreLayoutState(layout);
        window->windowDidLoad();
    }
    SiteWindow(const SiteWindow&) = delete;
    SiteWindow& operator=(const SiteWindow&) = delete;
    ~SiteWindow()
    {
        if (window)
            window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    static QVariantMap localFolder(const std::filesystem::path& folder)
    {
        return {{endpoint::protocol, QString(endpoint::fileProtocol)},
                {endpoint::path, QString::fromStdString(folder.string())},
                {endpoint::autoconnect, 1}};
    }

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
    QString text(const char* label) const { return find<QLabel>(label).text(); }
    void click(const char* button) const { find<QAbstractButton>(button).click(); }
    bool isEnabled(const char* name) const { return find<QWidget>(name).isEnabled(); }

    /// The progress panel.
    QString status() const { return text("progressPanelTextField1"); }
    QString log() const { return QString::fromUtf8(find<LogView>("progressPanelTextField2").log().text()); }
    bool isDone() const { return isEnabled("progressPanelOKButton"); }

    /// The destination's pane.
    QString connectState() const
    {
        return destination().widget()->findChild<QLabel*>("connectStateField")->text();
    }
    QAbstractButton& connectButton() const
    {
        return *destination().widget()->findChild<QAbstractButton*>("connectButton");
    }
    /// What the destination's first column lists.
    QStringList shownNames() const
    {
        QStringList names;
        const auto& model = destination().browser().model();
        for (int row = 0; row < model.rowCount({}); ++row)
            names.append(model.index(row, 0, {}).data().toString());
        return names;
    }

    /// Compares by `button`, or transfers what is ticked, and waits for the end.
    bool compare(const char* button = "uploadButton") const { return syncBy("comparison", button); }
    bool transfer() const { return syncBy("transfer", "syncButton"); }
    /// Neither a comparison nor a transfer is running.
    bool isSyncIdle() const
    {
        return !find<QWidget>("syncProgressIndicator").isVisibleTo(&find<QWidget>("syncPanel"));
    }
    /// The rows of the publish table sorted by name, ticked ones with a plus, the others with a minus.
    QStringList rows() const
    {
        QStringList rows;
        const QAbstractItemModel& model = *find<QTableView>("syncTableView").model();
        for (int row = 0; row < model.rowCount(); ++row) {
            const bool isTicked = model.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
            rows.append((isTicked ? u'+' : u'-') + nameAt(model, row));
        }
        std::sort(rows.begin(), rows.end(),
                  [](const QString& a, const QString& b) { return a.mid(1) < b.mid(1); });
        return rows;
    }
    void tickOnly(const QStringList& names) const
    {
        QAbstractItemModel& model = *find<QTableView>("syncTableView").model();
        for (int row = 0; row < model.rowCount(); ++row) {
            const bool isTicked = names.contains(nameAt(model, row));
            model.setData(model.index(row, 0), isTicked ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
        }
    }

    /// The column of a pane.
    static BrowserListView& list(const BrowserController& pane, int column)
    {
        return *pane.widget()->findChild<BrowserListView*>(QStringLiteral("browserList%1").arg(column));
    }
    static QModelIndex item(const BrowserController& pane, int column, const char* name)
    {
        return pane.browser().model().childNamed(list(pane, column).rootIndex(), name);
    }

    /// Moves a drag over `target` at `row`, or below its rows, and drops it if it is accepted there. Returns
    /// the action; Qt::IgnoreAction when the drop is refused.
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

    /// As drop(), with the selected rows of `from` dragged by the mouse.
    static Qt::DropAction dragAndDrop(BrowserListView& from, BrowserListView& target, const QModelIndex& row,
                                      Qt::KeyboardModifiers modifiers = {})
    {
        std::optional<Qt::DropAction> action;
        QCoreApplication::processEvents(); // lays out columns that have just opened
        // The offscreen platform has no drag loop.
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

    QPointer<HaldenDoc> window;

private:
    bool syncBy(const char* flow, const char* button) const
    {
        return runFlow(
            flow, [&] { click(button); }, [&] { return isSyncIdle(); });
    }
    static QString nameAt(const QAbstractItemModel& table, int row)
    {
        return table.index(row, SyncTableModel::NameColumn).data().toString();
    }
};

} // namespace luma::test
