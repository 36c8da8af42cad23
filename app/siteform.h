// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/siterecord.h"

#include <QWidget>

#include <memory>

namespace Ui {
class SiteForm;
}

namespace luma {

/// The selected site as a form: its name, its two endpoints, and the button that opens it. The endpoints
/// stand side by side where there is room, else one above the other. Edits go straight to the record. Main
/// thread only.
class SiteForm final : public QWidget
{
    Q_OBJECT

public:
    explicit SiteForm(QWidget* parent = nullptr);
    ~SiteForm() override;

    /// Shows `record`, or an empty, disabled form when it is null.
    void setRecord(const std::shared_ptr<SiteRecord>& record);

    /// Puts the keyboard into the name, all of it selected: where a new site begins.
    void editName();

signals:
    void openRequested();
    /// The user wants to choose an endpoint's folder; the sender's property `tag` says which: 0 the source's.
    void pathRequested(QObject* sender);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showName();

    std::unique_ptr<Ui::SiteForm> m_ui;
    std::shared_ptr<SiteRecord> m_record;
};

} // namespace luma
