// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QObject>
#include <QTimer>
#include <QVariant>

namespace luma {

class Preferences;
class SiteList;
class SitePasswords;

/// Keeps the list of sites in the preferences: reads it once, and writes it soon after each change. A stored list
/// that it can't read, or did not write, is kept aside there. Main thread only.
class SiteListStore final : public QObject
{
    Q_OBJECT

public:
    /// All three outlive the store.
    SiteListStore(SiteList& sites, SitePasswords& passwords, Preferences& preferences);

    /// Fills the list with the stored sites, and reads their passwords.
    void load();
    /// Writes a list that has changed, and the preferences, at once.
    Result<void> save();

signals:
    /// The list was written, or could not be; `error` is empty if it was.
    void written(const QString& error);

private:
    void noteChange();
    void keepAside(const QString& key, const QVariant& stored);
    void storePasswords();
    void write();
    Result<void> writeIfChanged();

    SiteList& m_sites;
    SitePasswords& m_passwords;
    Preferences& m_preferences;
    QTimer m_soon;
    QTimer m_anyway;
    bool m_isSaved = true;
    QVariant m_stored; // the list as last read or written
};

} // namespace luma
