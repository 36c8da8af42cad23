// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ConfigPanel;
}
class QAbstractButton;
class QLineEdit;

namespace luma {

/// The connection settings sheet of a pane. Its fields and the endpoint dictionary (see endpoint.h) are one:
/// an edit on either side shows on the other at once. Fields that the protocol does not use are disabled.
class ConfigPanel final : public QDialog
{
    Q_OBJECT

public:
    ConfigPanel(std::shared_ptr<ObservedDictionary> endpoint, QWidget* parent);
    ~ConfigPanel() override;

    /// The fields as a connection job gets them (see connectionrequest.h).
    [[nodiscard]] QVariantMap request() const;
    /// The selected protocol; empty when none is.
    [[nodiscard]] QString protocol() const;
    [[nodiscard]] bool connectsOnOpening() const;
    void clearErrorMessage();

signals:
    void connectRequested(QAbstractButton* sender);
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
