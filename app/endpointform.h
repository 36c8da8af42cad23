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

/// One side of a site as a form: where it lies and how it is reached. Every keystroke goes straight into the
/// dictionary, and what others write there shows here. A value of another type than expected is shown as well
/// as it can be and stays what it is until the user edits it. What the protocol does not use is disabled.
/// Main thread only.
class EndpointForm final : public QGroupBox
{
    Q_OBJECT

public:
    explicit EndpointForm(QWidget* parent = nullptr);
    ~EndpointForm() override;

    /// The side's number: 0 is the source, any other the destination. The button beside the path carries it
    /// as its property `tag`.
    void setTag(int tag);

    /// Shows `endpoint`, or nothing when it is null.
    void setEndpoint(const std::shared_ptr<ObservedDictionary>& endpoint);

signals:
    /// The user wants to choose the folder in a chooser.
    void pathRequested(QObject* sender);

private:
    void connectFields();
    void fillProtocols();
    void show(const QString& key);
    void showAll();
    void showProtocol();
    void updateEnabled();
    [[nodiscard]] QString shownText(const QString& key) const;

    std::unique_ptr<Ui::EndpointForm> m_ui;
    QHash<QString, QLineEdit*> m_fields;
    std::shared_ptr<ObservedDictionary> m_endpoint;
    int m_tag = 0;
};

} // namespace luma
