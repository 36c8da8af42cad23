// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/browser.h"
#include "browser/browsercontroller.h"
#include "site/haldendoc.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QPointer>
#include <QTableView>

#include <algorithm>
#include <memory>

namespace luma::test {

/// A site's real window, driven by the names of its widgets. Closes it at its end.
class PublishingWindow final
{
public:
    PublishingWindow(const std::shared_ptr<SiteRecord>& record, HaldenDoc::Services services)
        : m_window(new HaldenDoc(record, std::move(services)))
    {
        m_window->resize(1000, 760);
        m_window->windowDidLoad();
    }
    PublishingWindow(const PublishingWindow&) = delete;
    PublishingWindow& operator=(const PublishingWindow&) = delete;
    ~PublishingWindow()
    {
        if (m_window)
            m_window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    [[nodiscard]] HaldenDoc& window() const { return *m_window; }
    [[nodiscard]] BrowserController& destination() const { return m_window->destinationBrowserController(); }

    template <class T>
    [[nodiscard]] T& find(const char* name) const
    {
        return *m_window->findChild<T*>(QLatin1StringView(name));
    }
    [[nodiscard]] QString text(const char* label) const { return find<QLabel>(label).text(); }
    void click(const char* button) const { find<QAbstractButton>(button).click(); }
    [[nodiscard]] bool isEnabled(const char* name) const { return find<QWidget>(name).isEnabled(); }

    /// Of the destination's pane.
    [[nodiscard]] QString connectState() const
    {
        return destination().widget()->findChild<QLabel*>("connectStateField")->text();
    }
    [[nodiscard]] QAbstractButton& connectButton() const
    {
        return *destination().widget()->findChild<QAbstractButton*>("connectButton");
    }
    /// What the destination's first column lists.
    [[nodiscard]] QStringList shownNames() const
    {
        QStringList names;
        const auto& model = destination().browser().model();
        for (int row = 0; row < model.rowCount({}); ++row)
            names.append(model.index(row, 0, {}).data().toString());
        return names;
    }

    /// The comparison or the transfer has ended.
    [[nodiscard]] bool isSyncIdle() const
    {
        return !find<QWidget>("syncProgressIndicator").isVisibleTo(&find<QWidget>("syncPanel"));
    }
    /// The rows of the sync panel in order of their names, ticked ones with a plus, the others with a minus.
    [[nodiscard]] QStringList rows() const
    {
        QStringList rows;
        eachRow([&rows](QAbstractItemModel&, const QModelIndex& index, const QString& name) {
            const bool isTicked = index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
            rows.append((isTicked ? u'+' : u'-') + name);
        });
        std::sort(rows.begin(), rows.end(),
                  [](const QString& a, const QString& b) { return a.mid(1) < b.mid(1); });
        return rows;
    }
    void tickOnly(const QStringList& names) const
    {
        eachRow([&names](QAbstractItemModel& model, const QModelIndex& index, const QString& name) {
            model.setData(index, names.contains(name) ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
        });
    }
    void untick(const QStringList& names) const
    {
        eachRow([&names](QAbstractItemModel& model, const QModelIndex& index, const QString& name) {
            if (names.contains(name))
                model.setData(index, Qt::Unchecked, Qt::CheckStateRole);
        });
    }

private:
    QPointer<HaldenDoc> m_window;

    template <class Function>
    void eachRow(Function f) const
    {
        QAbstractItemModel& model = *find<QTableView>("syncTableView").model();
        const int nameColumn = model.columnCount() - 1;
        for (int row = 0; row < model.rowCount(); ++row)
            f(model, model.index(row, 0), model.index(row, nameColumn).data().toString());
    }
};

} // namespace luma::test
