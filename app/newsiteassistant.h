// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/mountstep.h"

#include <QVariantMap>
#include <QWizard>

#include <functional>
#include <memory>

class QLineEdit;

namespace Ui {
class NewSiteAssistant;
}

namespace luma {

/// Asks in two steps where a new site's pages and its server are, tests the connection on request, and gives the
/// record. A sheet that deletes itself when it is closed; a running test is then dropped. Main thread only.
class NewSiteAssistant final : public QWizard
{
    Q_OBJECT

public:
    using MounterSource = std::function<std::shared_ptr<VolumeMounter>()>;

    /// `record` has the values that the user isn't asked for, `mounter` what a test mounts with.
    NewSiteAssistant(QVariantMap record, MounterSource mounter, QWidget* parent);
    ~NewSiteAssistant() override;

    /// The new site's record, as far as it is filled in.
    [[nodiscard]] QVariantMap record() const;
    /// Whether the site is to be opened.
    [[nodiscard]] bool opensSite() const;

    /// Whether what the current page asks for is there.
    bool validateCurrentPage() override;

signals:
    /// The user wants to fill in the form instead.
    void skipped();

private:
    void connectFields();
    void addProtocols();
    void chooseFolder(QLineEdit& field);
    void updatePages();
    void test();
    void showTest(const QString& problem);
    void forgetTest();
    void showSummary();
    [[nodiscard]] bool hasShares() const;
    [[nodiscard]] ConnectionRequest request() const;
    [[nodiscard]] QString pagesProblem() const;
    [[nodiscard]] QString serverProblem() const;

    QVariantMap m_record;
    MounterSource m_mounter;
    std::unique_ptr<Ui::NewSiteAssistant> m_ui;
    WorkItemPointer m_test; // null while none runs
};

} // namespace luma
