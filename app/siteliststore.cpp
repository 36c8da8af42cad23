// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/siteliststore.h"

#include "app/preferences.h"
#include "app/sitelist.h"
#include "app/sitepasswords.h"
#include "site/sitearchive.h"

#include <chrono>

namespace luma {

namespace {

// Where a stored list is kept before another one replaces it: one that can't be read, and one that another
// process has written meanwhile.
const QString unreadableKey = QStringLiteral("sitesArrayDataUnreadable");
const QString replacedKey = QStringLiteral("sitesArrayDataReplaced");

// After the first of several changes, such as the letters of a name.
constexpr std::chrono::milliseconds saveDelay(500);

// A secret service that has not answered by then keeps the list from being saved no longer.
constexpr std::chrono::seconds longestWaitForSecrets(5);

} // namespace

SiteListStore::SiteListStore(SiteList& sites, SitePasswords& passwords, Preferences& preferences)
    : m_sites(sites), m_passwords(passwords), m_preferences(preferences)
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(saveDelay);
    connect(&m_soon, &QTimer::timeout, this, &SiteListStore::storePasswords);
    m_anyway.setSingleShot(true);
    m_anyway.setInterval(longestWaitForSecrets);
    connect(&m_anyway, &QTimer::timeout, this, &SiteListStore::write);
    connect(&m_passwords, &SitePasswords::settled, this, &SiteListStore::write);
    connect(&m_sites, &QAbstractItemModel::dataChanged, this, &SiteListStore::noteChange);
    connect(&m_sites, &QAbstractItemModel::rowsInserted, this, &SiteListStore::noteChange);
    connect(&m_sites, &SiteList::arranged, this, &SiteListStore::noteChange);
    connect(&m_sites, &QAbstractItemModel::rowsRemoved, this, &SiteListStore::noteChange);
}

void SiteListStore::load()
{
    m_sites.setRecords({});
    m_stored = m_preferences.value(Preferences::sitesArrayData);
    const auto records = m_stored.typeId() == QMetaType::QByteArray
                             ? unarchiveSites(m_stored.toByteArray())
                             : Result<QList<QVariantMap>>(Error{"the stored site list is not data"});
    if (!records) {
        keepAside(unreadableKey, m_stored);
        return;
    }
    m_sites.setRecords(*records);
    m_passwords.load();
}

// A value kept earlier stays.
void SiteListStore::keepAside(const QString& key, const QVariant& stored)
{
    QString place = key;
    for (int number = 2; m_preferences.value(place).isValid(); ++number) {
        if (m_preferences.value(place) == stored)
            return;
        place = key + QString::number(number);
    }
    m_preferences.setValue(place, stored);
}

void SiteListStore::noteChange()
{
    m_isSaved = false;
    if (!m_soon.isActive())
        m_soon.start();
}

// The list is written once they are stored.
void SiteListStore::storePasswords()
{
    if (m_passwords.store())
        m_anyway.start();
    else
        write();
}

void SiteListStore::write()
{
    m_isSaved = false;
    const auto saved = writeIfChanged();
    emit written(saved ? QString() : QString::fromStdString(saved.error().text));
}

Result<void> SiteListStore::save()
{
    m_soon.stop();
    return writeIfChanged();
}

Result<void> SiteListStore::writeIfChanged()
{
    m_anyway.stop();
    const QByteArray archive = archiveSites(m_passwords.storableRecords());
    if (m_isSaved || archive == m_stored) {
        m_isSaved = true;
        return m_preferences.save();
    }
    if (const auto readable = unarchiveSites(archive); !readable)
        return readable.error();
    // Reads what another process has written meanwhile.
    (void)m_preferences.save();
    if (const QVariant stored = m_preferences.value(Preferences::sitesArrayData); stored != m_stored)
        keepAside(replacedKey, stored);
    m_preferences.setValue(Preferences::sitesArrayData, archive);
    m_stored = archive;
    auto saved = m_preferences.save();
    m_isSaved = bool(saved);
    if (saved)
        m_passwords.dropUnneeded();
    return saved;
}

} // namespace luma
