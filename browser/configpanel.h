// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"
#include "browser/mountstep.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ConfigPanel;
}
class QLineEdit;

namespace luma {

/// The connection settings sheet of a pane. Its fields are bound to the endpoint dictionary (see endpoint.h):
/// a change on either side shows on the other at once. Fields that the protocol does not use are disabled.
/// Main thread only.
class ConfigPanel final : public QDialog
{
    Q_OBJECT

public:
    ConfigPanel(std::shared_ptr<ObservedDictionary> endpoint, QWidget* parent);
    ~ConfigPanel() override;

    /// The present values of the fields.
    [[nodiscard]] ConnectionRequest request() const;
    /// The selected protocol; empty if none is selected.
    [[nodiscard]] QString protocol() const;
    [[nodiscard]] bool connectsOnOpening() const;
    void clearErrorMessage();

signals:
    void connectRequested();
    void closeRequested();

private:
    std::unique_ptr<Ui::ConfigPanel> m_ui;
    std::shared_ptr<ObservedDictionary> m_endpoint;

    void bindText(QLineEdit& field, const QString& key);
    void bindProtocol();
    void bindAutoconnect();
    void connectButtons();
    void showProtocol(const QString& protocol);
    void updateFields();
    void togglePassword(bool visible);
    void chooseFolder();
};

} // namespace luma
