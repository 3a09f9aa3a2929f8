// What the application asks of the service, in the order of the protocol.
#include "API/Client/VeranoxAPIClient.h"
#include "API/Client/VeranoxURLEncoding.h"
#include "API/Records/VeranoxConfig.h"
#include "API/Records/VeranoxEditableConfig.h"
#include "API/Records/VeranoxEditablePublication.h"
#include "API/Records/VeranoxEditableTunnel.h"
#include "API/Records/VeranoxEnvironment.h"
#include "API/Records/VeranoxFeedback.h"
#include "API/Records/VeranoxPathReport.h"
#include "API/Records/VeranoxProfile.h"
#include "API/Records/VeranoxProfileAction.h"
#include "API/Records/VeranoxPublication.h"
#include "API/Records/VeranoxSaveConfigResponse.h"
#include "API/Records/VeranoxShutdownResponse.h"
#include "API/Records/VeranoxTunnel.h"
#include "Base/Json/Json.h"

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

// The path of one profile, tunnel or publication, or of an action on it.
QString pathOf(const QString &list, const QString &name, const QString &action = {})
{
    return u"/api/"_s + list + u'/' + percentEncodedForPath(name) + (action.isEmpty() ? action : u'/' + action);
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

jobs::Async<VeranoxProfileAction> VeranoxAPIClient::actOnProfile(
    VeranoxAPIWrite which, const QString &name, const QString &action)
{
    return write<VeranoxProfileAction>(which, {.method = "POST", .path = pathOf(u"profiles"_s, name, action)});
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::actOnTunnel(
    VeranoxAPIWrite which, const QString &name, const QString &action)
{
    return write<QList<VeranoxTunnel>>(which, {.method = "POST", .path = pathOf(u"tunnels"_s, name, action)});
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::actOnPublication(
    VeranoxAPIWrite which, const QString &name, const QString &action)
{
    return write<QList<VeranoxPublication>>(which, {.method = "POST", .path = pathOf(u"publications"_s, name, action)});
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

jobs::Async<void> VeranoxAPIClient::saveConfig(VeranoxEditableConfig config)
{
    co_await write<VeranoxSaveConfigResponse>(VeranoxAPIWrite::saveConfig,
        {.method = "POST", .path = u"/api/config?force=true"_s, .body = encodeRecord(config)});
}

jobs::Async<VeranoxProfileAction> VeranoxAPIClient::login(QString profileName)
{
    return actOnProfile(VeranoxAPIWrite::login, profileName, u"login"_s);
}

jobs::Async<VeranoxProfileAction> VeranoxAPIClient::logout(QString profileName)
{
    return actOnProfile(VeranoxAPIWrite::logout, profileName, u"logout"_s);
}

jobs::Async<void> VeranoxAPIClient::shutdown()
{
    co_await write<VeranoxShutdownResponse>(VeranoxAPIWrite::shutdown, {.method = "POST", .path = u"/api/shutdown"_s});
}

jobs::Async<VeranoxPathReport> VeranoxAPIClient::diagnose(QString target)
{
    return get<VeranoxPathReport>(
        u"/api/reports/path?target="_s + percentEncodedForQuery(target) + u"&netcheck=true&ping_count=3"_s);
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::fetchTunnels()
{
    return get<QList<VeranoxTunnel>>(u"/api/tunnels"_s);
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::saveTunnel(
    QString name, std::optional<QString> originalName, VeranoxEditableTunnel tunnel)
{
    const VeranoxTunnelSaveRequest request{
        .name = std::move(name), .originalName = std::move(originalName), .tunnel = std::move(tunnel)};
    return write<QList<VeranoxTunnel>>(
        VeranoxAPIWrite::saveTunnel, {.method = "POST", .path = u"/api/tunnels"_s, .body = encodeRecord(request)});
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::deleteTunnel(QString name)
{
    return write<QList<VeranoxTunnel>>(
        VeranoxAPIWrite::deleteTunnel, {.method = "DELETE", .path = pathOf(u"tunnels"_s, name)});
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::startTunnel(QString name)
{
    return actOnTunnel(VeranoxAPIWrite::startTunnel, name, u"start"_s);
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::stopTunnel(QString name)
{
    return actOnTunnel(VeranoxAPIWrite::stopTunnel, name, u"stop"_s);
}

jobs::Async<QList<VeranoxTunnel>> VeranoxAPIClient::restartTunnel(QString name)
{
    return actOnTunnel(VeranoxAPIWrite::restartTunnel, name, u"restart"_s);
}

jobs::Async<void> VeranoxAPIClient::setTunnelSecret(QString name, QString password)
{
    const VeranoxTunnelSecretRequest request{.password = std::move(password)};
    co_await write<QList<VeranoxTunnel>>(VeranoxAPIWrite::setTunnelSecret,
        {.method = "POST", .path = pathOf(u"tunnels"_s, name, u"secret"_s), .body = encodeRecord(request)});
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::fetchPublications()
{
    return get<QList<VeranoxPublication>>(u"/api/publications"_s);
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::savePublication(
    QString name, std::optional<QString> originalName, VeranoxEditablePublication publication)
{
    const VeranoxPublicationSaveRequest request{
        .name = std::move(name), .originalName = std::move(originalName), .publication = std::move(publication)};
    return write<QList<VeranoxPublication>>(VeranoxAPIWrite::savePublication,
        {.method = "POST", .path = u"/api/publications"_s, .body = encodeRecord(request)});
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::deletePublication(QString name)
{
    return write<QList<VeranoxPublication>>(
        VeranoxAPIWrite::deletePublication, {.method = "DELETE", .path = pathOf(u"publications"_s, name)});
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::startPublication(QString name)
{
    return actOnPublication(VeranoxAPIWrite::startPublication, name, u"start"_s);
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::stopPublication(QString name)
{
    return actOnPublication(VeranoxAPIWrite::stopPublication, name, u"stop"_s);
}

jobs::Async<QList<VeranoxPublication>> VeranoxAPIClient::restartPublication(QString name)
{
    return actOnPublication(VeranoxAPIWrite::restartPublication, name, u"restart"_s);
}

jobs::Async<VeranoxEnvironment> VeranoxAPIClient::fetchEnvironment()
{
    return get<VeranoxEnvironment>(u"/api/environment"_s);
}

jobs::Async<VeranoxFeedbackResult> VeranoxAPIClient::submitFeedback(QString message, QString kind, QString contact)
{
    const VeranoxFeedback feedback{.message = std::move(message),
        .kind = std::move(kind),
        .contact = std::move(contact),
        .appVersion = m_identity.appVersion,
        .os = m_identity.os};
    return write<VeranoxFeedbackResult>(VeranoxAPIWrite::submitFeedback,
        {.method = "POST", .path = u"/api/feedback"_s, .body = encodeRecord(feedback)});
}
