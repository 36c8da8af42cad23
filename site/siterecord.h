// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"

#include <memory>

namespace luma {

/// One site: its name and its two endpoints, and per direction the names left unticked. Shared by reference:
/// an edit in the site's window is an edit of the list's record. Main thread only.
class SiteRecord final : public QObject
{
    Q_OBJECT

public:
    /// Takes `siteID`, `sourceDict`, `destinationDict` and whatever else stands in `values`. What is missing
    /// or of another type is taken as an empty dictionary, which is written back only once it has been
    /// edited.
    explicit SiteRecord(const QVariantMap& values, QObject* parent = nullptr);

    [[nodiscard]] QVariantMap values() const;

    [[nodiscard]] QString siteID() const;
    void setSiteID(const QString& name);

    [[nodiscard]] const std::shared_ptr<ObservedDictionary>& sourceDict() const { return m_source; }
    [[nodiscard]] const std::shared_ptr<ObservedDictionary>& destinationDict() const { return m_destination; }

    /// The names that the user left unticked in `direction`, the direction's title.
    [[nodiscard]] QStringList untickedNames(const QString& direction) const;
    void setUntickedNames(const QString& direction, const QStringList& names);

signals:
    /// Anything of the record, an endpoint's value too, has changed.
    void changed();

private:
    ObservedDictionary m_values;
    std::shared_ptr<ObservedDictionary> m_source;
    std::shared_ptr<ObservedDictionary> m_destination;
};

} // namespace luma
