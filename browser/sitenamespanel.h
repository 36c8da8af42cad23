// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "links/webrules.h"

#include <QDialog>
#include <QTimer>

#include <filesystem>
#include <memory>

namespace Ui {
class SiteNamesPanel;
}

namespace luma {

class SiteNamesModel;

/// The window with all classes and ids of a pane's site: where they have rules, which elements have them, which are unused. They
/// are looked for in the background. Not modal; closing or destroying it ends the search. Main thread only.
class SiteNamesPanel final : public QDialog
{
    Q_OBJECT

public:
    explicit SiteNamesPanel(QWidget* parent);
    ~SiteNamesPanel() override;

    /// Shows the panel and looks for the names of this site.
    void begin(const std::filesystem::path& site, const WebRules& rules);
    /// Files of the site have changed: looks again soon, if the panel is open.
    void filesChanged();
    void reject() override;

signals:
    /// The user wants to see this place of a file, counted from 1.
    void pageActivated(const std::filesystem::path& page, unsigned line, unsigned column);
    /// The class or id is to be renamed in the whole site.
    void renameRequested(bool isId, const std::string& name, const std::string& newName);

private:
    std::unique_ptr<Ui::SiteNamesPanel> m_ui;
    SiteNamesModel* m_model;
    std::filesystem::path m_site;
    WebRules m_rules;
    WorkItemPointer m_item; // while names are looked for
    QString m_error;
    QTimer m_refreshTimer;

    void setUpView();
    void connectControls();
    void look();
    void stop();
    void filter();
    void activate(const QModelIndex& row);
    void rename();
    void updateControls();
    [[nodiscard]] QString countsText() const;
};

} // namespace luma
