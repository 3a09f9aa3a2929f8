#include <libsecret/secret.h>
// GLib comes before Qt, whose keywords would be its names.
#include "Platform/Linux/Secrets/GLibCall.h"
#include "Platform/Linux/Secrets/SecretServiceTunnelSecrets.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr const char *serviceName = "app.veranox.tunnel-ssh-password";
constexpr jobs::Clock::Duration patience = 60s; // with a user who is asked, and with a service that hangs

const SecretSchema &schema()
{
    static const SecretSchema ours = [] {
        SecretSchema made{};
        made.name = serviceName;
        made.flags = SECRET_SCHEMA_DONT_MATCH_NAME; // what other tools stored under these attributes counts, too
        made.attributes[0] = {.name = "service", .type = SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {.name = "account", .type = SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return ours;
}

using Attributes = std::unique_ptr<GHashTable, decltype(&g_hash_table_unref)>;

Attributes attributesOf(const QString &tunnelName)
{
    Attributes attributes(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free), g_hash_table_unref);
    g_hash_table_insert(attributes.get(), g_strdup("service"), g_strdup(serviceName));
    g_hash_table_insert(attributes.get(), g_strdup("account"), g_strdup(tunnelName.toUtf8().constData()));
    return attributes;
}

QString problemOf(const GLibError &error)
{
    if (!error)
        return {};
    const bool isAbsent = (*error).domain == G_DBUS_ERROR
        && ((*error).code == G_DBUS_ERROR_SERVICE_UNKNOWN || (*error).code == G_DBUS_ERROR_NAME_HAS_NO_OWNER
            || (*error).code == G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND);
    if (isAbsent)
        return u"This desktop has no keyring, so Veranox cannot keep SSH passwords. Install and start one, for example "
               "GNOME Keyring or KWallet, or type the password again after each start."_s;
    return u"The keyring did not do what Veranox asked of it: "_s + QString::fromUtf8((*error).message);
}

std::optional<QString> textOf(SecretValue *value)
{
    if (!value)
        return std::nullopt;
    gsize size = 0;
    const gchar *bytes = secret_value_get(value, &size);
    const QByteArray text(bytes, static_cast<qsizetype>(size));
    secret_value_unref(value);
    return text.isValidUtf8() ? std::optional(QString::fromUtf8(text)) : std::nullopt;
}

// The operation, cancelled when it takes longer than anybody waits.
template <class T> jobs::Async<T> withPatience(jobs::Async<T> operation)
{
    auto child = jobs::fork(std::move(operation));
    const jobs::CancelAfter limit(child, patience);
    co_return co_await child;
}

} // namespace

SecretServiceTunnelSecrets::SecretServiceTunnelSecrets(jobs::MainQueue &queue) : m_queue(queue), m_jobs(queue) { }

SecretServiceTunnelSecrets::~SecretServiceTunnelSecrets() = default;

jobs::Async<std::optional<QString>> SecretServiceTunnelSecrets::password(QString tunnelName, Unlocking unlocking)
{
    return withPatience(unlocking == Unlocking::ask ? readPassword(tunnelName) : readPasswordQuietly(tunnelName));
}

jobs::Async<bool> SecretServiceTunnelSecrets::hasPassword(QString tunnelName)
{
    co_return co_await withPatience(find(tunnelName)) != nullptr;
}

jobs::Async<bool> SecretServiceTunnelSecrets::setPassword(QString password, QString tunnelName)
{
    if (!password.isEmpty())
        co_return co_await withPatience(store(password, tunnelName));
    co_await deletePassword(tunnelName);
    co_return true;
}

jobs::Async<> SecretServiceTunnelSecrets::deletePassword(QString tunnelName)
{
    co_await withPatience(clear(tunnelName));
}

jobs::Async<std::optional<QString>> SecretServiceTunnelSecrets::readPassword(QString tunnelName)
{
    const Item item = co_await find(tunnelName);
    if (!item || (secret_item_get_locked(item.get()) != 0 && !co_await unlock(item)))
        co_return std::nullopt;
    co_return co_await secretOf(item);
}

// A locked keyring gives its password some other time, should the user unlock it when asked.
jobs::Async<std::optional<QString>> SecretServiceTunnelSecrets::readPasswordQuietly(QString tunnelName)
{
    const Item item = co_await find(tunnelName);
    if (!item)
        co_return std::nullopt;
    if (!secret_item_get_locked(item.get()))
        co_return co_await secretOf(item);
    if (!std::exchange(m_hasAskedToUnlock, true))
        m_jobs.start(unlock(item));
    co_return std::nullopt;
}

// Sees locked items, too, and asks nobody.
jobs::Async<SecretServiceTunnelSecrets::Item> SecretServiceTunnelSecrets::find(QString tunnelName)
{
    const GLibCall call(m_queue);
    secret_service_search(nullptr, &schema(), attributesOf(tunnelName).get(), SECRET_SEARCH_NONE, call.cancellable(),
        GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    GList *found = secret_service_search_finish(nullptr, result.get(), error.out());
    m_problem = problemOf(error);
    Item item;
    if (found)
        item = adopted(static_cast<SecretItem *>(g_object_ref(found->data)));
    g_list_free_full(found, g_object_unref);
    co_return item;
}

jobs::Async<bool> SecretServiceTunnelSecrets::unlock(Item item)
{
    const GLibCall call(m_queue);
    GList items{.data = item.get()};
    secret_service_unlock(nullptr, &items, call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    co_return secret_service_unlock_finish(nullptr, result.get(), nullptr, nullptr) > 0;
}

jobs::Async<std::optional<QString>> SecretServiceTunnelSecrets::secretOf(Item item)
{
    const GLibCall call(m_queue);
    secret_item_load_secret(item.get(), call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    const bool isLoaded = secret_item_load_secret_finish(item.get(), result.get(), error.out()) != 0;
    m_problem = problemOf(error);
    co_return isLoaded ? textOf(secret_item_get_secret(item.get())) : std::nullopt;
}

jobs::Async<bool> SecretServiceTunnelSecrets::store(QString password, QString tunnelName)
{
    const GLibCall call(m_queue);
    const QByteArray label = u"SSH password of the Veranox tunnel %1"_s.arg(tunnelName).toUtf8();
    secret_password_storev(&schema(), attributesOf(tunnelName).get(), SECRET_COLLECTION_DEFAULT, label.constData(),
        password.toUtf8().constData(), call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    const bool isStored = secret_password_store_finish(result.get(), error.out()) != 0;
    m_problem = problemOf(error);
    co_return isStored;
}

// Whether there was one.
jobs::Async<bool> SecretServiceTunnelSecrets::clear(QString tunnelName)
{
    const GLibCall call(m_queue);
    secret_password_clearv(
        &schema(), attributesOf(tunnelName).get(), call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    const bool wasThere = secret_password_clear_finish(result.get(), error.out()) != 0;
    m_problem = problemOf(error);
    co_return wasThere;
}
