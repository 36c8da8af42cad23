// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"
#include "site/keptplace.h"

#include <memory>
#include <string>
#include <vector>

namespace luma {

enum class Direction {
    Upload,  ///< from source to destination
    Download ///< from destination to source
};

/// One site: its name, its two endpoints, and the names left unticked in each direction. Shared by reference:
/// an edit in the site's window changes the record in the list of sites. Main thread only.
class SiteRecord final : public QObject
{
    Q_OBJECT

public:
    /// Keeps all of `values`. A `sourceDict` or `destinationDict` that is missing or not a dictionary counts
    /// as empty, and values() changes it only after an edit.
    explicit SiteRecord(const QVariantMap& values, QObject* parent = nullptr);

    [[nodiscard]] QVariantMap values() const;

    [[nodiscard]] QString siteID() const;
    void setSiteID(const QString& name);

    /// The folder of the list that the site is in; empty for none.
    [[nodiscard]] QString folder() const;
    void setFolder(const QString& name);

    /// The site's addresses on the web as the user has written them, with blanks between.
    [[nodiscard]] QString webAddressText() const;
    void setWebAddressText(const QString& text);
    /// The same one by one, as WebRules needs them; "https://" is added to one without a scheme.
    [[nodiscard]] std::vector<std::string> webAddresses() const;

    [[nodiscard]] const std::shared_ptr<ObservedDictionary>& sourceDict() const { return m_source; }
    [[nodiscard]] const std::shared_ptr<ObservedDictionary>& destinationDict() const { return m_destination; }

    /// The names of the rows that the user left unticked.
    [[nodiscard]] QStringList untickedNames(Direction direction) const;
    void setUntickedNames(Direction direction, const QStringList& names);
    /// Those of them that were deletions; they outlive comparisons that list none.
    [[nodiscard]] QStringList untickedDeletions(Direction direction) const;
    void setUntickedDeletions(Direction direction, const QStringList& names);

    /// The files that the report on unlinked items leaves out, relative to the site's folder; bytes.
    [[nodiscard]] std::vector<std::string> keptItems() const;
    void setKeptItems(const std::vector<std::string>& items);

    /// The site's patterns for IgnoredNames, one a line.
    [[nodiscard]] QString ignoredNames() const;
    void setIgnoredNames(const QString& patterns);

    /// What an upload keeps of what it replaces or deletes; nothing at first.
    [[nodiscard]] KeepChoice keepChoice() const;
    void setKeepChoice(const KeepChoice& choice);

signals:
    /// Something in the record or in an endpoint has changed.
    void changed();

private:
    ObservedDictionary m_values;
    std::shared_ptr<ObservedDictionary> m_source;
    std::shared_ptr<ObservedDictionary> m_destination;
};

} // namespace luma
