// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/endpointform.h"
#include "site/siterecord.h"

#include <QWidget>

#include <memory>

namespace Ui {
class SiteForm;
}

namespace luma {

/// The selected site as a form: its name, its web address, what publishing leaves out and keeps, its two
/// endpoints, and the button that opens it. The endpoints are side by side if there is room, otherwise one
/// above the other. Edits go straight to the record. Main thread only.
class SiteForm final : public QWidget
{
    Q_OBJECT

public:
    explicit SiteForm(QWidget* parent = nullptr);
    ~SiteForm() override;

    /// Shows `record`, or an empty, disabled form if it is null.
    void setRecord(const std::shared_ptr<SiteRecord>& record);

    /// Focuses the name and selects all of it.
    void editName();

signals:
    void openRequested();
    /// A chooser for the folder of one side.
    void folderRequested(SiteSide side);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    EndpointForm* addEndpoint(SiteSide side, const QString& name, const QString& title);
    void showTexts();
    void takeIgnoredNames();
    void takeKeepChoice();

    std::unique_ptr<Ui::SiteForm> m_ui;
    EndpointForm* sourceDict = nullptr;
    EndpointForm* destinationDict = nullptr;
    std::shared_ptr<SiteRecord> m_record;
};

} // namespace luma
