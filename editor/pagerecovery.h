// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace luma {

/// A page whose edits were not saved.
struct UnsavedPage
{
    std::filesystem::path record; // the file that keeps it
    std::filesystem::path page;   // its own file; empty for a new page
    std::string source;           // as saving would write it, UTF-8
};

/// Keeps the unsaved text of a page in a file that the user alone can read, below the state folder, for the case that
/// the program ends before it is saved. The file stays if this is destroyed without forget(). Failures are ignored.
/// Main thread.
class PageRecovery final : public QObject
{
    Q_OBJECT

public:
    /// `describe` gives the page as it is now, without the record; outlives this.
    PageRecovery(std::function<UnsavedPage()> describe, QObject* parent);

    /// The page was edited: keeps its text once no edit follows for two seconds, or 20 seconds after the first.
    void keep();
    /// The page was saved or its edits were discarded.
    void forget();
    /// Goes on with a record of an earlier run.
    void adopt(const std::filesystem::path& record) { m_record = record; }

    /// What earlier runs have left; while no page is open.
    static std::vector<UnsavedPage> left();

private:
    std::function<UnsavedPage()> m_describe;
    std::filesystem::path m_record; // empty until something was kept
    QTimer m_soon;
    QElapsedTimer m_sinceFirstEdit; // valid while m_soon runs

    void write();
};

} // namespace luma
