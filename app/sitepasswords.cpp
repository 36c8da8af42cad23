// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sitepasswords.h"

#include "base/mainhop.h"
#include "base/workitem.h"
#include "browser/endpoint.h"

#include <QUuid>

#include <array>

namespace luma {

namespace {

const std::array sides = {QStringLiteral("sourceDict"), QStringLiteral("destinationDict")};

QString passwordOf(const ObservedDictionary& endpoint)
{
    return endpoint.string(endpoint::password);
}

QString idOf(const ObservedDictionary& endpoint)
{
    return endpoint.string(endpoint::passwordID);
}

// Applies `change` to the endpoints of a record that have a key of a password.
template <class Change>
QVariantMap withEndpoints(QVariantMap record, Change change)
{
    for (const QString& side : sides) {
        const QVariant value = record.value(side);
        if (value.typeId() != QMetaType::QVariantMap)
            continue;
        QVariantMap endpoint = value.toMap();
        change(endpoint);
        record[side] = endpoint;
    }
    return record;
}

} // namespace

SitePasswords::SitePasswords(SiteList& sites, std::shared_ptr<const SecretStore> store, QObject* parent)
    : QObject(parent), m_sites(sites), m_store(std::move(store))
{}

SitePasswords::~SitePasswords()
{
    cancel();
}

void SitePasswords::cancel()
{
    if (m_store)
        m_store->cancel();
    m_calls.clear();
    m_isCancelled = true;
}

void SitePasswords::call(Call call)
{
    if (m_isCancelled)
        return;
    m_calls.push_back(std::move(call));
    if (m_calls.size() == 1)
        startFirstCall();
}

void SitePasswords::startFirstCall()
{
    start(std::make_shared<WorkItem>(),
          [here = QPointer(this), store = m_store, call = m_calls.front()](const WorkItem&) {
              const auto answer = call(*store);
              onMain(here, [&answer](SitePasswords& alive) {
                  if (alive.m_isCancelled)
                      return;
                  alive.m_calls.pop_front();
                  if (!alive.m_calls.empty())
                      alive.startFirstCall();
                  answer(alive);
              });
          });
}

QList<SitePasswords::Endpoint> SitePasswords::endpoints() const
{
    QList<Endpoint> all;
    for (int row = 0; row < m_sites.rowCount(); ++row)
        all += endpointsOf(*m_sites.record(row));
    return all;
}

QList<SitePasswords::Endpoint> SitePasswords::endpointsOf(const SiteRecord& record)
{
    return {record.sourceDict().get(), record.destinationDict().get()};
}

bool SitePasswords::isMissing(const ObservedDictionary& endpoint) const
{
    const QString id = idOf(endpoint);
    return m_store && !id.isEmpty() && !m_kept.contains(id) && passwordOf(endpoint).isEmpty();
}

void SitePasswords::load()
{
    read(endpoints(), SecretStore::WhenLocked::Fail, [this] { (void)store(); });
}

bool SitePasswords::whenLoaded(const SiteList::Record& record, const std::function<void()>& done)
{
    QList<Endpoint> missing = endpointsOf(*record);
    missing.removeIf([this](const Endpoint& endpoint) { return !isMissing(*endpoint); });
    if (missing.isEmpty()) {
        done();
        return true;
    }
    read(missing, SecretStore::WhenLocked::Ask, done);
    return false;
}

void SitePasswords::read(const QList<Endpoint>& wanted, SecretStore::WhenLocked whenLocked,
                         std::function<void()> done)
{
    if (!m_store)
        return;
    const int number = ++m_lastRead;
    m_reads[number] = std::move(done);
    QStringList ids;
    for (const Endpoint& endpoint : wanted) {
        if (!idOf(*endpoint).isEmpty())
            ids += idOf(*endpoint);
    }
    call([wanted, ids, whenLocked, number](const SecretStore& store) {
        std::vector<Found> found;
        for (const QString& id : ids) {
            if (auto secret = store.load(id.toStdString(), whenLocked))
                found.push_back({id, *std::move(secret)});
        }
        return [wanted, found, number](SitePasswords& passwords) {
            passwords.take(wanted, found);
            passwords.m_reads.extract(number).mapped()();
        };
    });
}

void SitePasswords::take(const QList<Endpoint>& wanted, const std::vector<Found>& found)
{
    for (const auto& [id, secret] : found) {
        if (!secret)
            continue;
        const QString password = QString::fromStdString(*secret);
        m_kept[id] = password;
        // One that the user typed meanwhile counts.
        for (const Endpoint& endpoint : wanted) {
            if (endpoint && idOf(*endpoint) == id && passwordOf(*endpoint).isEmpty())
                endpoint->setValue(endpoint::password, password);
        }
    }
}

bool SitePasswords::store()
{
    if (!m_store)
        return false;
    bool isAnyOnItsWay = false;
    for (int row = 0; row < m_sites.rowCount(); ++row) {
        const SiteList::Record record = m_sites.record(row);
        const QString label = tr("LUMA: %1").arg(record->siteID());
        for (const Endpoint& endpoint : endpointsOf(*record))
            isAnyOnItsWay = storeEndpoint(endpoint, label) || isAnyOnItsWay;
    }
    return isAnyOnItsWay;
}

bool SitePasswords::storeEndpoint(const Endpoint& endpoint, const QString& label)
{
    const QString password = passwordOf(*endpoint);
    QString id = idOf(*endpoint);
    if (m_storing.contains(id))
        return true;
    if (password.isEmpty() && m_kept.contains(id)) {
        endpoint->setValue(endpoint::passwordID, QString());
        drop(id);
    }
    if (password.isEmpty() || (!id.isEmpty() && m_kept.value(id) == password))
        return false;
    if (id.isEmpty()) {
        id = QUuid::createUuid().toString(QUuid::WithoutBraces);
        endpoint->setValue(endpoint::passwordID, id);
    }
    m_storing.insert(id);
    call([endpoint, id, label, password](const SecretStore& store) {
        const bool isKept(store.store(id.toStdString(), label.toStdString(), password.toStdString()));
        return [=](SitePasswords& passwords) { passwords.noteStored(endpoint, id, password, isKept); };
    });
    return true;
}

void SitePasswords::noteStored(const Endpoint& endpoint, const QString& id, const QString& password,
                               bool isKept)
{
    m_storing.remove(id);
    // After a failure it is not known what the service has.
    if (isKept)
        m_kept[id] = password;
    else
        m_kept.remove(id);
    if (const bool isTypedOn = endpoint && passwordOf(*endpoint) != password; isTypedOn)
        (void)store();
    if (m_storing.isEmpty())
        emit settled();
}

QList<QVariantMap> SitePasswords::storableRecords() const
{
    QList<QVariantMap> records = m_sites.records();
    for (QVariantMap& record : records) {
        record = withEndpoints(record, [this](QVariantMap& endpoint) {
            const QString id = endpoint.value(endpoint::passwordID).toString();
            const QVariant password = endpoint.value(endpoint::password);
            if (!id.isEmpty() && m_kept.contains(id) && password == QVariant(m_kept.value(id)))
                endpoint[endpoint::password] = QString();
        });
    }
    return records;
}

QVariantMap SitePasswords::withoutPasswords(QVariantMap record)
{
    return withEndpoints(asNew(std::move(record)), [](QVariantMap& endpoint) {
        if (endpoint.contains(endpoint::password))
            endpoint[endpoint::password] = QString();
    });
}

QVariantMap SitePasswords::asNew(QVariantMap record)
{
    return withEndpoints(std::move(record),
                         [](QVariantMap& endpoint) { endpoint.remove(endpoint::passwordID); });
}

void SitePasswords::forget(const SiteRecord& record)
{
    for (const Endpoint& endpoint : endpointsOf(record)) {
        // One that was never read could not be put back.
        if (m_kept.contains(idOf(*endpoint)))
            m_unneeded += idOf(*endpoint);
    }
}

void SitePasswords::remember(const SiteRecord& record)
{
    for (const Endpoint& endpoint : endpointsOf(record))
        m_unneeded.remove(idOf(*endpoint));
}

void SitePasswords::dropUnneeded()
{
    for (const QString& id : std::exchange(m_unneeded, {}))
        drop(id);
}

void SitePasswords::drop(const QString& id)
{
    m_kept.remove(id);
    call([id](const SecretStore& store) {
        store.remove(id.toStdString());
        return [](SitePasswords&) {};
    });
}

} // namespace luma
