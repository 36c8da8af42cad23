// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"

#include <QGroupBox>

#include <memory>

class QLineEdit;

namespace Ui {
class EndpointForm;
}

namespace luma {

enum class SiteSide { Source, Destination };

/// One side of a site as a form: where it is and how it is reached. Every keystroke goes straight into the
/// dictionary, and changes made elsewhere show here. A value of an unexpected type is shown as well as
/// possible and kept until the user edits it. Fields that the protocol does not use are disabled. Main thread
/// only.
class EndpointForm final : public QGroupBox
{
    Q_OBJECT

public:
    EndpointForm(SiteSide side, QWidget* parent);
    ~EndpointForm() override;

    /// Shows `endpoint`, or an empty, disabled form if it is null.
    void setEndpoint(const std::shared_ptr<ObservedDictionary>& endpoint);

signals:
    /// A chooser for the folder.
    void folderRequested();

private:
    void connectFields();
    void fillProtocols();
    void nameControls();
    void show(const QString& key);
    void showAll();
    void showProtocol();
    void updateEnabled();
    [[nodiscard]] QString shownText(const QString& key) const;

    std::unique_ptr<Ui::EndpointForm> m_ui;
    QHash<QString, QLineEdit*> m_fields;
    std::shared_ptr<ObservedDictionary> m_endpoint;
    SiteSide m_side;
};

} // namespace luma
