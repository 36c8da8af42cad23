// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/sitefindrun.h"
#include "links/linksupdate.h"
#include "links/sitesearch.h"

#include <QDialog>
#include <QTimer>

#include <filesystem>
#include <memory>
#include <vector>

namespace Ui {
class SiteFindPanel;
}

namespace luma {

class FoundPlaces;

/// The window that finds text in all files of a pane's site, and replaces what the user leaves ticked. The table fills while
/// the search runs, and shows old and new text. Not modal; closing or destroying it ends the search. Main thread only.
class SiteFindPanel final : public QDialog
{
    Q_OBJECT

public:
    explicit SiteFindPanel(QWidget* parent);
    ~SiteFindPanel() override;

    /// Shows the panel for this site, with `text` to look for unless it is empty. What was found in another site goes.
    void begin(const std::filesystem::path& site, const QString& text);
    /// Ends the search at once; what it has found stays.
    void stop();
    /// Files were moved or rewritten: if any is in the site, what was found is looked for again.
    void filesChanged(const std::shared_ptr<const luma::LinksUpdate>& update);
    void reject() override;

signals:
    /// The user wants to see this place, counted from 1, or the file where there is none (0).
    void pageActivated(const std::filesystem::path& page, unsigned line, unsigned column);
    /// The ticked places that `query` has found are to be replaced.
    void replacementRequested(const luma::SiteQuery& query, const QString& replacement,
                              const std::vector<luma::WantedPlaces>& places);

private:
    enum class State { Idle, Running, Done, Stopped };

    std::unique_ptr<Ui::SiteFindPanel> m_ui;
    FoundPlaces* m_places;
    SiteFindRun* m_run;
    std::filesystem::path m_site;
    SiteQuery m_query; // of what is shown
    State m_state = State::Idle;
    bool m_isReplaced = false; // what the last search found
    QString m_error;
    QTimer m_showTimer;
    QTimer m_filterTimer;

    void connectControls();
    void connectRun();
    [[nodiscard]] SiteQuery query() const;
    void find();
    void search();
    void showFound();
    void end(const QString& error);
    void activate(const QModelIndex& row);
    void replace();
    void showReplacement();
    void updateControls();
    [[nodiscard]] QString countsText() const;
    [[nodiscard]] QString placeholderText() const;
};

} // namespace luma
