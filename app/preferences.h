// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "browser/panehost.h"
#include "site/savedsites.h"

#include <QSettings>
#include <QVariantMap>

namespace luma {

/// The user's preferences: a settings file that only the user can read, for site records contain passwords. A
/// key's initial value counts only while nothing is stored under it. An unreadable file counts as empty. Main
/// thread only.
class Preferences final
{
public:
    static constexpr QLatin1StringView sitesArrayData = sitesArrayKey;
    static constexpr QLatin1StringView siteTemplate{"siteTemplate"};
    static constexpr QLatin1StringView language{"Language"}; // of the texts, "de"; empty: the desktop's
    static constexpr QLatin1StringView reopensSites{"ReopenSites"};    // false until the user wants it
    static constexpr QLatin1StringView sitesLeftOpen{"SitesLeftOpen"}; // names of sites
    static constexpr QLatin1StringView excludedFolders{"ExcludedFolders"};
    static constexpr QLatin1StringView tidiesPages{"TidyPagesWhenSaved"}; // false until the user wants it

    static constexpr QLatin1StringView templateFolder{"TemplateFolder"}; // empty: the usual one
    static constexpr QLatin1StringView linksByLetter{"LinksByLetter"};
    static constexpr QLatin1StringView indexPages{"IndexPages"}; // empty: the usual names
    static constexpr QLatin1StringView extensionsMayBeLeftOut{"ExtensionsMayBeLeftOut"};
    static constexpr QLatin1StringView fragmentsAreChecked{"FragmentsAreChecked"};
    static constexpr QLatin1StringView asksBeforeManyPages{"AskBeforeManyPages"};
    static constexpr QLatin1StringView mostPagesUnasked{"MostPagesUnasked"};

    /// Before anything is written, `file` gets mode 0600; a new folder for it gets mode 0700.
    explicit Preferences(const QString& file, QVariantMap initialValues = {});

    [[nodiscard]] QVariant value(const QString& key) const;
    /// As the user has written them, separated by commas.
    [[nodiscard]] QString excludedFolderNames() const { return namesAt(excludedFolders); }
    [[nodiscard]] QString indexPageNames() const { return namesAt(indexPages); }
    /// All but what a site's record holds.
    [[nodiscard]] ReportChoices reportChoices() const;

    /// Kept in memory until save().
    void setValue(const QString& key, const QVariant& value) { m_settings.setValue(key, value); }
    Result<void> save();

private:
    [[nodiscard]] QString namesAt(QLatin1StringView key) const;

    QSettings m_settings;
    QVariantMap m_initialValues;
};

} // namespace luma
