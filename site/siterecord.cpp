// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/siterecord.h"

#include <QRegularExpression>

#include <algorithm>

namespace luma {

namespace {

constexpr QLatin1StringView siteIDKey{"siteID"};
constexpr QLatin1StringView folderKey{"Folder"};
constexpr QLatin1StringView webAddressKey{"WebAddress"};
constexpr QLatin1StringView sourceKey{"sourceDict"};
constexpr QLatin1StringView destinationKey{"destinationDict"};
constexpr QLatin1StringView keptItemsKey{"KeptItems"};
constexpr QLatin1StringView ignoredNamesKey{"IgnoredNames"};
constexpr QLatin1StringView keptDaysKey{"KeptDays"};
constexpr QLatin1StringView keptFolderKey{"KeptFolder"};

constexpr QLatin1StringView deletionsSuffix{"Deletions"};

QString keyFor(Direction direction)
{
    return direction == Direction::Upload ? QStringLiteral("Upload") : QStringLiteral("Download");
}

QVariantMap dictionary(const QVariantMap& values, QLatin1StringView key)
{
    const QVariant found = values.value(key);
    return found.typeId() == QMetaType::QVariantMap ? found.toMap() : QVariantMap();
}

void putBack(QVariantMap& values, QLatin1StringView key, const ObservedDictionary& endpoint)
{
    if (!endpoint.values().isEmpty() || values.value(key).typeId() == QMetaType::QVariantMap)
        values.insert(key, endpoint.values());
}

} // namespace

SiteRecord::SiteRecord(const QVariantMap& values, QObject* parent)
    : QObject(parent),
      m_values(values),
      m_source(std::make_shared<ObservedDictionary>(dictionary(values, sourceKey))),
      m_destination(std::make_shared<ObservedDictionary>(dictionary(values, destinationKey)))
{
    connect(&m_values, &ObservedDictionary::changed, this, &SiteRecord::changed);
    connect(m_source.get(), &ObservedDictionary::changed, this, &SiteRecord::changed);
    connect(m_destination.get(), &ObservedDictionary::changed, this, &SiteRecord::changed);
}

QVariantMap SiteRecord::values() const
{
    QVariantMap values = m_values.values();
    putBack(values, sourceKey, *m_source);
    putBack(values, destinationKey, *m_destination);
    return values;
}

QString SiteRecord::siteID() const
{
    return m_values.string(siteIDKey);
}

void SiteRecord::setSiteID(const QString& name)
{
    m_values.setValue(siteIDKey, name);
}

QString SiteRecord::folder() const
{
    return m_values.string(folderKey);
}

void SiteRecord::setFolder(const QString& name)
{
    if (name != folder())
        m_values.setValue(folderKey, name);
}

QString SiteRecord::webAddressText() const
{
    return m_values.string(webAddressKey);
}

void SiteRecord::setWebAddressText(const QString& text)
{
    m_values.setValue(webAddressKey, text);
}

std::vector<std::string> SiteRecord::webAddresses() const
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    std::vector<std::string> addresses;
    for (const QString& address : webAddressText().split(blanks, Qt::SkipEmptyParts)) {
        const bool hasScheme = address.contains(QLatin1StringView("//"));
        addresses.push_back((hasScheme ? address : QStringLiteral("https://") + address).toStdString());
    }
    return addresses;
}

QStringList SiteRecord::untickedNames(Direction direction) const
{
    return m_values.stringList(keyFor(direction));
}

void SiteRecord::setUntickedNames(Direction direction, const QStringList& names)
{
    // The type that the archive gives back; a QStringList would compare unequal.
    m_values.setValue(keyFor(direction), QVariantList(names.begin(), names.end()));
}

QStringList SiteRecord::untickedDeletions(Direction direction) const
{
    return m_values.stringList(keyFor(direction) + deletionsSuffix);
}

void SiteRecord::setUntickedDeletions(Direction direction, const QStringList& names)
{
    m_values.setValue(keyFor(direction) + deletionsSuffix, QVariantList(names.begin(), names.end()));
}

std::vector<std::string> SiteRecord::keptItems() const
{
    std::vector<std::string> items;
    for (const QVariant& item : m_values.value(keptItemsKey).toList())
        items.push_back(item.toByteArray().toStdString());
    return items;
}

void SiteRecord::setKeptItems(const std::vector<std::string>& items)
{
    QVariantList values;
    for (const std::string& item : items)
        values.append(QByteArray::fromStdString(item));
    m_values.setValue(keptItemsKey, values);
}

QString SiteRecord::ignoredNames() const
{
    return m_values.string(ignoredNamesKey);
}

void SiteRecord::setIgnoredNames(const QString& patterns)
{
    m_values.setValue(ignoredNamesKey, patterns);
}

KeepChoice SiteRecord::keepChoice() const
{
    return {.days = std::max(m_values.value(keptDaysKey).toInt(), 0),
            .folder = m_values.string(keptFolderKey).toStdString()};
}

void SiteRecord::setKeepChoice(const KeepChoice& choice)
{
    m_values.setValue(keptDaysKey, choice.days);
    m_values.setValue(keptFolderKey, QString::fromStdString(choice.folder));
}

} // namespace luma
