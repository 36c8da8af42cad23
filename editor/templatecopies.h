// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "page/templatefiles.h"

#include <QObject>

#include <filesystem>
#include <set>
#include <string>

namespace luma {

/// Brings the files that the template of one new page uses into its site. If the page is never saved, they go to the trash
/// again, unless they have changed since or another page made of the template has them. Main thread; files are copied on
/// another.
class TemplateCopies final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    /// Stops copying; forgets a page that was not saved.
    ~TemplateCopies() override;

    /// Copies the files; copied() or failed() says that it is done.
    void start(const PageTemplate& from, const std::filesystem::path& site);
    /// The page has been saved.
    void keep();

signals:
    /// The files are there; `page` holds the template's bytes with its links right for a page in the site's folder.
    void copied(const std::string& page);
    /// Nothing was copied, for this reason.
    void failed(const QString& reason);

private:
    void take(const CopiedFiles& files);

    WorkItemPointer m_job;
    std::set<std::filesystem::path> m_files; // and the folders that they needed
};

} // namespace luma
