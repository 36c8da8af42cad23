// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QSettings>
#include <QVariantMap>

namespace luma {

/// The user's preferences: a settings file that only the user can read, for site records carry passwords. A
/// key's initial value counts only while nothing is stored under it. A file that cannot be read counts as
/// empty. Main thread only.
class Preferences final
{
public:
    static constexpr QLatin1StringView sitesArrayData{"sitesArrayData"};
    static constexpr QLatin1StringView siteTemplate{"siteTemplate"};
    static constexpr QLatin1StringView excludedFolders{"ExcludedFolders"};

    /// `file` is made with mode 0600, in a folder with mode 0700, or set to it, before anything is written.
    explicit Preferences(const QString& file = defaultFile());

    /// luma/luma.conf in the user's configuration folder.
    static QString defaultFile();

    void setInitialValues(const QVariantMap& values) { m_initialValues = values; }

    [[nodiscard]] QVariant value(const QString& key) const;
    /// The names as they stand, separated by commas.
    [[nodiscard]] QString excludedFolderNames() const;

    /// Kept in memory until save().
    void setValue(const QString& key, const QVariant& value) { m_settings.setValue(key, value); }
    Result<void> save();

private:
    QSettings m_settings;
    QVariantMap m_initialValues;
};

} // namespace luma
