// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "links/webrules.h"

#include <QDialog>
#include <QSet>
#include <QStringList>

#include <filesystem>
#include <memory>

namespace Ui {
class ClassSheet;
}

namespace luma {

/// The sheet that asks for a new class and the style sheet that gets its rule. A name that can't be, or that the page or its
/// site has already, is told and not taken. The site is read on the thread pool meanwhile. Main thread.
class ClassSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit ClassSheet(QWidget* parent);
    ~ClassSheet() override;

    /// Opens the sheet; the last of `sheets` is chosen. `known`: the classes of the page and its sheets. The site's are added
    /// if it can be read.
    void begin(const QStringList& sheets, const QSet<QString>& known, const std::filesystem::path& site,
               const WebRules& rules);

signals:
    /// `sheet` is the number of the chosen one.
    void confirmed(const QString& name, int sheet);

private:
    void readSite(const std::filesystem::path& site, const WebRules& rules);
    void check();

    std::unique_ptr<Ui::ClassSheet> m_ui;
    QSet<QString> m_known;
    QSet<QString> m_ofSite;
    WorkItemPointer m_job; // while the site is read
};

} // namespace luma
