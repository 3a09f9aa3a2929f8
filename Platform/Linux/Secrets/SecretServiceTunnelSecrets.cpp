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

using Value = std::unique_ptr<SecretValue, void (*)(SecretValue *)>;

Value valueOf(const QString &password)
{
    const QByteArray bytes = password.toUtf8();
    return {secret_value_new(bytes.constData(), bytes.size(), "text/plain"),
        [](SecretValue *value) { secret_value_unref(value); }};
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

std::unexpected<SecretServiceFailure> failure(const GLibError &error)
{
    return std::unexpected(SecretServiceFailure(*error));
}

// The operation, cancelled when it takes longer than anybody waits.
template <class T> jobs::Async<T> withPatience(jobs::Async<T> operation)
{
    auto child = jobs::fork(std::move(operation));
    const jobs::CancelAfter limit(child, patience);
    co_return co_await child;
}

} // namespace

SecretServiceTunnelSecrets::SecretServiceTunnelSecrets(jobs::MainQueue &queue) : m_queue(queue), m_jobs(queue)
{
    SecretServiceFailure::tellThemApart();
}

SecretServiceTunnelSecrets::~SecretServiceTunnelSecrets() = default;

jobs::Async<std::optional<QString>> SecretServiceTunnelSecrets::password(QString tunnelName, Unlocking unlocking)
{
    const auto read = unlocking == Unlocking::ask ? &Self::readPassword : &Self::readPasswordQuietly;
    const auto result = co_await withPatience(attempt(read, tunnelName));
    co_return result.value_or(std::nullopt);
}

jobs::Async<bool> SecretServiceTunnelSecrets::hasPassword(QString tunnelName)
{
    const auto result = co_await withPatience(attempt(&Self::find, tunnelName));
    co_return result && result->item;
}

jobs::Async<bool> SecretServiceTunnelSecrets::setPassword(QString password, QString tunnelName)
{
    if (!password.isEmpty())
        co_return (co_await withPatience(attempt(&Self::store, tunnelName, password))).value_or(false);
    co_await deletePassword(tunnelName);
    co_return true;
}

jobs::Async<> SecretServiceTunnelSecrets::deletePassword(QString tunnelName)
{
    co_await withPatience(attempt(&Self::clear, tunnelName));
}

template <class T, class... Arguments>
jobs::Async<SecretServiceResult<T>> SecretServiceTunnelSecrets::attemptOnce(
    Operation<T, Arguments...> operation, Arguments... arguments)
{
    try {
        co_return co_await (this->*operation)(arguments...);
    } catch (const GLibCall::Cancelled &) {
        co_return std::unexpected(SecretServiceFailure::unanswered());
    }
}

// The operation, and once more on a new connection if the keyring is another one than it was.
template <class T, class... Arguments>
jobs::Async<SecretServiceResult<T>> SecretServiceTunnelSecrets::attempt(
    Operation<T, Arguments...> operation, Arguments... arguments)
{
    auto result = co_await attemptOnce(operation, arguments...);
    if (!result && result.error().isStale) {
        secret_service_disconnect();
        result = co_await attemptOnce(operation, arguments...);
    }
    m_problem = result ? QString() : result.error().problem;
    co_return result;
}

// Whoever holds it keeps it alive for the items found through it, which otherwise would never answer once the keyring
// has left the bus.
jobs::Async<SecretServiceResult<SecretServiceTunnelSecrets::Service>> SecretServiceTunnelSecrets::connection()
{
    const GLibCall call(m_queue);
    secret_service_get(SECRET_SERVICE_NONE, call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    Service service = adopted(secret_service_get_finish(result.get(), error.out()));
    if (error)
        co_return failure(error);
    co_return service;
}

jobs::Async<SecretServiceResult<std::optional<QString>>> SecretServiceTunnelSecrets::readPassword(QString tunnelName)
{
    const auto found = co_await find(tunnelName);
    if (!found)
        co_return std::unexpected(found.error());
    if (!found->item)
        co_return std::nullopt;
    if (secret_item_get_locked(found->item.get()) != 0) {
        const auto isUnlocked = co_await unlock(*found);
        if (!isUnlocked)
            co_return std::unexpected(isUnlocked.error());
        if (!*isUnlocked)
            co_return std::nullopt;
    }
    co_return co_await secretOf(*found);
}

// A locked keyring gives its password some other time, should the user unlock it when asked.
jobs::Async<SecretServiceResult<std::optional<QString>>> SecretServiceTunnelSecrets::readPasswordQuietly(
    QString tunnelName)
{
    const auto found = co_await find(tunnelName);
    if (!found)
        co_return std::unexpected(found.error());
    if (!found->item)
        co_return std::nullopt;
    if (!secret_item_get_locked(found->item.get()))
        co_return co_await secretOf(*found);
    if (!std::exchange(m_hasAskedToUnlock, true))
        m_jobs.start(unlock(*found));
    co_return std::nullopt;
}

// Sees locked items, too, and asks nobody.
jobs::Async<SecretServiceResult<SecretServiceTunnelSecrets::Found>> SecretServiceTunnelSecrets::find(QString tunnelName)
{
    const auto service = co_await connection();
    if (!service)
        co_return std::unexpected(service.error());
    const GLibCall call(m_queue);
    secret_service_search(service->get(), &schema(), attributesOf(tunnelName).get(), SECRET_SEARCH_NONE,
        call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    GList *items = secret_service_search_finish(service->get(), result.get(), error.out());
    if (error)
        co_return failure(error);
    Found found{.service = *service, .item = nullptr};
    if (items)
        found.item = adopted(static_cast<SecretItem *>(g_object_ref(items->data)));
    g_list_free_full(items, g_object_unref);
    co_return found;
}

// Whether the user did.
jobs::Async<SecretServiceResult<bool>> SecretServiceTunnelSecrets::unlock(Found found)
{
    const GLibCall call(m_queue);
    GList items{.data = found.item.get()};
    secret_service_unlock(found.service.get(), &items, call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    const gint count = secret_service_unlock_finish(found.service.get(), result.get(), nullptr, error.out());
    if (error)
        co_return failure(error);
    co_return count > 0;
}

jobs::Async<SecretServiceResult<std::optional<QString>>> SecretServiceTunnelSecrets::secretOf(Found found)
{
    const GLibCall call(m_queue);
    secret_item_load_secret(found.item.get(), call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    secret_item_load_secret_finish(found.item.get(), result.get(), error.out());
    if (error)
        co_return failure(error);
    co_return textOf(secret_item_get_secret(found.item.get()));
}

jobs::Async<SecretServiceResult<bool>> SecretServiceTunnelSecrets::store(QString tunnelName, QString password)
{
    const auto service = co_await connection();
    if (!service)
        co_return std::unexpected(service.error());
    const GLibCall call(m_queue);
    const QByteArray label = u"SSH password of the Veranox tunnel %1"_s.arg(tunnelName).toUtf8();
    secret_service_store(service->get(), &schema(), attributesOf(tunnelName).get(), SECRET_COLLECTION_DEFAULT,
        label.constData(), valueOf(password).get(), call.cancellable(), GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    const bool isStored = secret_service_store_finish(service->get(), result.get(), error.out()) != 0;
    if (error)
        co_return failure(error);
    co_return isStored;
}

// Whether there was one.
jobs::Async<SecretServiceResult<bool>> SecretServiceTunnelSecrets::clear(QString tunnelName)
{
    const auto service = co_await connection();
    if (!service)
        co_return std::unexpected(service.error());
    const GLibCall call(m_queue);
    secret_service_clear(service->get(), &schema(), attributesOf(tunnelName).get(), call.cancellable(),
        GLibCall::finished, call.callData());
    const auto result = co_await call;
    GLibError error;
    const bool wasThere = secret_service_clear_finish(service->get(), result.get(), error.out()) != 0;
    if (error)
        co_return failure(error);
    co_return wasThere;
}
