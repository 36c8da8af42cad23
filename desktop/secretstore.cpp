// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/gpointer.h"

#include "base/usertext.h"

#include <libsecret/secret.h>
// GLib's headers come first, because they use Qt's word `signals` for a member.
#include "desktop/secretstore.h"

namespace luma {

namespace {

struct ReleaseValue
{
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};
using ValuePointer = std::unique_ptr<SecretValue, ReleaseValue>;

const SecretSchema* schema()
{
    static const SecretSchema* const made = secret_schema_new("org.luma.SitePassword", SECRET_SCHEMA_NONE,
                                                              "id", SECRET_SCHEMA_ATTRIBUTE_STRING, nullptr);
    return made;
}

GPointer<GHashTable> attributesOf(const std::string& id)
{
    return GPointer<GHashTable>(secret_attributes_build(schema(), "id", id.c_str(), nullptr));
}

Error failure(GError* raw, const char* otherwise)
{
    const GPointer<GError> error(raw);
    return Error{error ? error->message : userText(otherwise)};
}

// libsecret keeps its session with the service, also after that service has been restarted: it would learn of that
// only from an event loop of the calling thread.
void beginAnew()
{
    secret_service_disconnect();
}

// Creating a default keyring, or unlocking it, would ask the user.
Result<void> needUnlockedKeyring(GCancellable* cancellable)
{
    GError* error = nullptr;
    const GPointer<SecretService> service(
        secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, cancellable, &error));
    if (!service)
        return failure(error, QT_TRANSLATE_NOOP("luma::Engines", "there is no secret service"));
    const GPointer<SecretCollection> keyring(secret_collection_for_alias_sync(
        service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancellable, &error));
    if (!keyring)
        return failure(error,
                       QT_TRANSLATE_NOOP("luma::Engines", "the secret service has no default keyring"));
    if (secret_collection_get_locked(keyring.get()) != FALSE)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "the keyring is locked"))};
    return {};
}

// None if the item stayed locked.
std::optional<std::string> secretOf(SecretItem* item)
{
    const ValuePointer value(secret_item_get_secret(item));
    if (!value)
        return std::nullopt;
    gsize length = 0;
    const gchar* const bytes = secret_value_get(value.get(), &length);
    return std::string(bytes, length);
}

} // namespace

class SecretStore::Cancellable final
{
public:
    [[nodiscard]] GCancellable* get() const { return m_cancellable.get(); }

private:
    GPointer<GCancellable> m_cancellable{g_cancellable_new()};
};

SecretStore::SecretStore() : m_cancellable(std::make_unique<Cancellable>()) {}

SecretStore::~SecretStore() = default;

Result<void> SecretStore::store(const std::string& id, const std::string& label,
                                const std::string& secret) const
{
    beginAnew();
    if (const auto unlocked = needUnlockedKeyring(m_cancellable->get()); !unlocked)
        return unlocked.error();
    const ValuePointer value(
        secret_value_new(secret.data(), static_cast<gssize>(secret.size()), "text/plain"));
    GError* error = nullptr;
    if (secret_service_store_sync(nullptr, schema(), attributesOf(id).get(), SECRET_COLLECTION_DEFAULT,
                                  label.c_str(), value.get(), m_cancellable->get(), &error) == FALSE)
        return failure(error, QT_TRANSLATE_NOOP("luma::Engines", "the secret service refused the password"));
    const auto kept = load(id, WhenLocked::Fail);
    if (!kept)
        return kept.error();
    if (*kept != secret)
        return Error{userText(
            QT_TRANSLATE_NOOP("luma::Engines", "the secret service does not give the password back"))};
    return {};
}

Result<std::optional<std::string>> SecretStore::load(const std::string& id, WhenLocked whenLocked) const
{
    beginAnew();
    const int flags = SECRET_SEARCH_LOAD_SECRETS | (whenLocked == WhenLocked::Ask ? SECRET_SEARCH_UNLOCK : 0);
    GError* error = nullptr;
    GList* const items =
        secret_service_search_sync(nullptr, schema(), attributesOf(id).get(),
                                   static_cast<SecretSearchFlags>(flags), m_cancellable->get(), &error);
    if (error)
        return failure(error, "");
    if (!items)
        return std::optional<std::string>();
    auto secret = secretOf(static_cast<SecretItem*>(items->data));
    g_list_free_full(items, g_object_unref);
    if (!secret)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "the keyring is locked"))};
    return secret;
}

void SecretStore::remove(const std::string& id) const
{
    beginAnew();
    (void)secret_service_clear_sync(nullptr, schema(), attributesOf(id).get(), m_cancellable->get(), nullptr);
}

void SecretStore::cancel() const
{
    g_cancellable_cancel(m_cancellable->get());
}

} // namespace luma
