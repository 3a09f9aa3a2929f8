// What the application asks of the service: one line each.
#include "API/Json/Json.h"
#include "API/VeranoxAPIClient.h"
#include "API/VeranoxConfig.h"
#include "API/VeranoxEditableConfig.h"
#include "API/VeranoxEnvironment.h"
#include "API/VeranoxProfile.h"
#include "API/VeranoxShutdownResponse.h"
#include "Publications/VeranoxPublication.h"
#include "Tunnels/VeranoxTunnel.h"

using namespace Qt::StringLiterals;

namespace {

// A place that the transport's thread fills and the caller then empties; whoever is left last frees it.
template <class T> using Slot = std::shared_ptr<std::optional<T>>;

template <class T> Slot<T> makeSlot()
{
    return std::make_shared<std::optional<T>>();
}

template <class T> auto decodeInto(Slot<T> slot)
{
    return [slot = std::move(slot)](const QByteArray &body) { slot->emplace(decodeRecord<T>(body)); };
}

} // namespace

template <class T> jobs::Async<T> VeranoxAPIClient::get(QString path)
{
    const auto record = makeSlot<T>();
    co_await requestData({.method = "GET", .path = std::move(path)}, decodeInto(record));
    co_return std::move(**record);
}

template <class T> jobs::Async<T> VeranoxAPIClient::getFromConfig()
{
    const QByteArray data = co_await m_configCache.data();
    const auto record = makeSlot<T>();
    co_await inTransportThread([data, decode = decodeInto(record)] { decode(data); });
    co_return std::move(**record);
}

template <class T> jobs::Async<T> VeranoxAPIClient::write(VeranoxAPIWrite which, Call call)
{
    VeranoxConfigInvalidationScope invalidation(m_configCache, configInvalidation(which));
    const auto record = makeSlot<T>();
    co_await requestData(std::move(call), decodeInto(record));
    invalidation.succeed();
    co_return std::move(**record);
}

jobs::Async<QList<VeranoxProfile>> VeranoxAPIClient::fetchProfiles()
{
    return get<QList<VeranoxProfile>>(u"/api/profiles"_s);
}

jobs::Async<VeranoxConfig> VeranoxAPIClient::fetchConfig()
{
    return getFromConfig<VeranoxConfig>();
}

jobs::Async<VeranoxEditableConfig> VeranoxAPIClient::fetchEditableConfig()
{
    return getFromConfig<VeranoxEditableConfig>();
}

jobs::Async<VeranoxEnvironment> VeranoxAPIClient::fetchEnvironment()
{
    return get<VeranoxEnvironment>(u"/api/environment"_s);
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::fetchTunnels()
{
    return get<QList<VeranoxTunnel>>(u"/api/tunnels"_s);
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::fetchPublications()
{
    return get<QList<VeranoxPublication>>(u"/api/publications"_s);
}

jobs::Async<void> VeranoxAPIClient::shutdown()
{
    co_await write<VeranoxShutdownResponse>(VeranoxAPIWrite::shutdown, {.method = "POST", .path = u"/api/shutdown"_s});
}
