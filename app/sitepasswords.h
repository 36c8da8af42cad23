// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/sitelist.h"
#include "desktop/secretstore.h"

#include <QHash>
#include <QPointer>
#include <QSet>

#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace luma {

/// Moves the passwords of the listed sites into the desktop's secret service and back. In memory every endpoint
/// has its password; what is stored of a record leaves out each that the service is known to have. A password
/// that the service doesn't take stays in the record. Main thread only; the service's answers are awaited in
/// the background, one after the other.
class SitePasswords final : public QObject
{
    Q_OBJECT

public:
    /// `sites` outlives it. Without a store every password stays in its record.
    SitePasswords(SiteList& sites, std::shared_ptr<const SecretStore> store, QObject* parent = nullptr);
    ~SitePasswords() override;

    /// Reads the passwords that can be had without asking the user, then stores those that are still in a
    /// record.
    void load();

    /// Calls `done` once the site's passwords have been read, or can't be: at once if they are there, else
    /// later. If the keyring is locked, the desktop asks the user to unlock it. False if that takes a while.
    bool whenLoaded(const SiteList::Record& record, const std::function<void()>& done);

    /// Hands the changed passwords to the service and drops those that were emptied. True if it has to answer
    /// first; then settled() follows.
    bool store();

    /// The values of the listed records, to be stored.
    [[nodiscard]] QList<QVariantMap> storableRecords() const;
    /// The same of one record, without any password.
    [[nodiscard]] static QVariantMap withoutPasswords(QVariantMap record);
    /// The values of a record as a new one's: a password, but not kept by the service yet.
    [[nodiscard]] static QVariantMap asNew(QVariantMap record);

    /// The passwords of a site that was removed, or put back. Removed ones leave the service with
    /// dropUnneeded(), once the list is stored without them.
    void forget(const SiteRecord& record);
    void remember(const SiteRecord& record);
    void dropUnneeded();

    /// Ends running calls; nothing is stored afterwards.
    void cancel();

signals:
    /// The service has answered: storableRecords() has changed.
    void settled();

private:
    // The jobs must not hold an endpoint, which would then be destroyed on their thread.
    using Endpoint = QPointer<ObservedDictionary>;
    // Asks the service, in the background; what it returns runs on the main thread.
    using Call = std::function<std::function<void(SitePasswords&)>(const SecretStore&)>;
    struct Found
    {
        QString id;
        std::optional<std::string> secret;
    };

    [[nodiscard]] QList<Endpoint> endpoints() const;
    static QList<Endpoint> endpointsOf(const SiteRecord& record);
    [[nodiscard]] bool isMissing(const ObservedDictionary& endpoint) const;
    void read(const QList<Endpoint>& wanted, SecretStore::WhenLocked whenLocked, std::function<void()> done);
    void take(const QList<Endpoint>& wanted, const std::vector<Found>& found);
    bool storeEndpoint(const Endpoint& endpoint, const QString& label);
    void noteStored(const Endpoint& endpoint, const QString& id, const QString& password, bool isKept);
    void drop(const QString& id);
    void call(Call call);
    void startFirstCall();

    SiteList& m_sites;
    std::shared_ptr<const SecretStore> m_store;
    QHash<QString, QString> m_kept;               // by id; what the service is known to have
    QSet<QString> m_storing;                      // ids whose password is on its way
    QSet<QString> m_unneeded;                     // ids of removed sites
    std::map<int, std::function<void()>> m_reads; // what follows each read, by its number
    int m_lastRead = 0;
    bool m_isCancelled = false;
    std::deque<Call> m_calls; // made one after the other, so that the last one counts; the first is running
};

} // namespace luma
