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
#include "Base/Json/DecodingError.h"
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
    return [slot = std::move(slot)](const QByteArray &body) -> VeranoxAPIResult<> {
        try {
            slot->emplace(decodeRecord<T>(body));
            return {};
        } catch (const DecodingError &error) {
            return std::unexpected(VeranoxAPIFailure::undecodable(error.localizedDescription()));
        }
    };
}

// What the slot holds if it was filled.
template <class T> VeranoxAPIResult<T> taken(const VeranoxAPIResult<> &outcome, const Slot<T> &slot)
{
    if (!outcome)
        return std::unexpected(outcome.error());
    return std::move(**slot);
}

// The same outcome, of an answer whose record nobody needs.
template <class T> VeranoxAPIResult<> withoutValue(const VeranoxAPIResult<T> &result)
{
    if (!result)
        return std::unexpected(result.error());
    return {};
}

// The path of one profile, tunnel or publication, or of an action on it.
QString pathOf(const QString &list, const QString &name, const QString &action = {})
{
    return u"/api/"_s + list + u'/' + percentEncodedForPath(name) + (action.isEmpty() ? action : u'/' + action);
}

} // namespace

template <class T> VeranoxAPICall<T> VeranoxAPIClient::get(QString path)
{
    const auto record = makeSlot<T>();
    const auto outcome = co_await requestData({.method = "GET", .path = std::move(path)}, decodeInto(record));
    co_return taken(outcome, record);
}

template <class T> VeranoxAPICall<T> VeranoxAPIClient::getFromConfig()
{
    const auto data = co_await m_configCache.data();
    if (!data)
        co_return std::unexpected(data.error());
    const auto record = makeSlot<T>();
    const auto outcome = std::make_shared<VeranoxAPIResult<>>();
    co_await inTransportThread([data = *data, outcome, decode = decodeInto(record)] { *outcome = decode(data); });
    co_return taken(*outcome, record);
}

template <class T> VeranoxAPICall<T> VeranoxAPIClient::write(VeranoxAPIWrite which, Call call)
{
    VeranoxConfigInvalidationScope invalidation(m_configCache, configInvalidation(which));
    const auto record = makeSlot<T>();
    const auto outcome = co_await requestData(std::move(call), decodeInto(record));
    if (outcome)
        invalidation.succeed();
    co_return taken(outcome, record);
}

VeranoxAPICall<VeranoxProfileAction> VeranoxAPIClient::actOnProfile(
    VeranoxAPIWrite which, const QString &name, const QString &action)
{
    return write<VeranoxProfileAction>(which, {.method = "POST", .path = pathOf(u"profiles"_s, name, action)});
}

VeranoxAPICall<QList<VeranoxTunnel>> VeranoxAPIClient::actOnTunnel(
    VeranoxAPIWrite which, const QString &name, const QString &action)
{
    return write<QList<VeranoxTunnel>>(which, {.method = "POST", .path = pathOf(u"tunnels"_s, name, action)});
}

VeranoxAPICall<QList<VeranoxPublication>> VeranoxAPIClient::actOnPublication(
    VeranoxAPIWrite which, const QString &name, const QString &action)
{
    return write<QList<VeranoxPublication>>(which, {.method = "POST", .path = pathOf(u"publications"_s, name, action)});
}

VeranoxAPICall<QList<VeranoxProfile>> VeranoxAPIClient::fetchProfiles()
{
    return get<QList<VeranoxProfile>>(u"/api/profiles"_s);
}

VeranoxAPICall<VeranoxConfig> VeranoxAPIClient::fetchConfig()
{
    return getFromConfig<VeranoxConfig>();
}

VeranoxAPICall<VeranoxEditableConfig> VeranoxAPIClient::fetchEditableConfig()
{
    return getFromConfig<VeranoxEditableConfig>();
}

VeranoxAPICall<> VeranoxAPIClient::saveConfig(VeranoxEditableConfig config)
{
    co_return withoutValue(co_await write<VeranoxSaveConfigResponse>(VeranoxAPIWrite::saveConfig,
        {.method = "POST", .path = u"/api/config?force=true"_s, .body = encodeRecord(config)}));
}

VeranoxAPICall<VeranoxProfileAction> VeranoxAPIClient::login(QString profileName)
{
    return actOnProfile(VeranoxAPIWrite::login, profileName, u"login"_s);
}

VeranoxAPICall<VeranoxProfileAction> VeranoxAPIClient::logout(QString profileName)
{
    return actOnProfile(VeranoxAPIWrite::logout, profileName, u"logout"_s);
}

VeranoxAPICall<> VeranoxAPIClient::shutdown()
{
    co_return withoutValue(co_await write<VeranoxShutdownResponse>(
        VeranoxAPIWrite::shutdown, {.method = "POST", .path = u"/api/shutdown"_s}));
}

VeranoxAPICall<VeranoxPathReport> VeranoxAPIClient::diagnose(QString target)
{
    return get<VeranoxPathReport>(
        u"/api/reports/path?target="_s + percentEncodedForQuery(target) + u"&netcheck=true&ping_count=3"_s);
}

VeranoxAPICall<QList<VeranoxTunnel>> VeranoxAPIClient::fetchTunnels()
{
    return get<QList<VeranoxTunnel>>(u"/api/tunnels"_s);
}

VeranoxAPICall<QList<VeranoxTunnel>> VeranoxAPIClient::saveTunnel(
    QString name, std::optional<QString> originalName, VeranoxEditableTunnel tunnel)
{
    const VeranoxTunnelSaveRequest request{
        .name = std::move(name), .originalName = std::move(originalName), .tunnel = std::move(tunnel)};
    return write<QList<VeranoxTunnel>>(
        VeranoxAPIWrite::saveTunnel, {.method = "POST", .path = u"/api/tunnels"_s, .body = encodeRecord(request)});
}

VeranoxAPICall<QList<VeranoxTunnel>> VeranoxAPIClient::deleteTunnel(QString name)
{
    return write<QList<VeranoxTunnel>>(
        VeranoxAPIWrite::deleteTunnel, {.method = "DELETE", .path = pathOf(u"tunnels"_s, name)});
}

VeranoxAPICall<QList<VeranoxTunnel>> VeranoxAPIClient::startTunnel(QString name)
{
    return actOnTunnel(VeranoxAPIWrite::startTunnel, name, u"start"_s);
}

VeranoxAPICall<QList<VeranoxTunnel>> VeranoxAPIClient::stopTunnel(QString name)
{
    return actOnTunnel(VeranoxAPIWrite::stopTunnel, name, u"stop"_s);
}

VeranoxAPICall<QList<VeranoxTunnel>> VeranoxAPIClient::restartTunnel(QString name)
{
    return actOnTunnel(VeranoxAPIWrite::restartTunnel, name, u"restart"_s);
}

VeranoxAPICall<> VeranoxAPIClient::setTunnelSecret(QString name, QString password)
{
    const VeranoxTunnelSecretRequest request{.password = std::move(password)};
    co_return withoutValue(co_await write<QList<VeranoxTunnel>>(VeranoxAPIWrite::setTunnelSecret,
        {.method = "POST", .path = pathOf(u"tunnels"_s, name, u"secret"_s), .body = encodeRecord(request)}));
}

VeranoxAPICall<QList<VeranoxPublication>> VeranoxAPIClient::fetchPublications()
{
    return get<QList<VeranoxPublication>>(u"/api/publications"_s);
}

VeranoxAPICall<QList<VeranoxPublication>> VeranoxAPIClient::savePublication(
    QString name, std::optional<QString> originalName, VeranoxEditablePublication publication)
{
    const VeranoxPublicationSaveRequest request{
        .name = std::move(name), .originalName = std::move(originalName), .publication = std::move(publication)};
    return write<QList<VeranoxPublication>>(VeranoxAPIWrite::savePublication,
        {.method = "POST", .path = u"/api/publications"_s, .body = encodeRecord(request)});
}

VeranoxAPICall<QList<VeranoxPublication>> VeranoxAPIClient::deletePublication(QString name)
{
    return write<QList<VeranoxPublication>>(
        VeranoxAPIWrite::deletePublication, {.method = "DELETE", .path = pathOf(u"publications"_s, name)});
}

VeranoxAPICall<QList<VeranoxPublication>> VeranoxAPIClient::startPublication(QString name)
{
    return actOnPublication(VeranoxAPIWrite::startPublication, name, u"start"_s);
}

VeranoxAPICall<QList<VeranoxPublication>> VeranoxAPIClient::stopPublication(QString name)
{
    return actOnPublication(VeranoxAPIWrite::stopPublication, name, u"stop"_s);
}

VeranoxAPICall<QList<VeranoxPublication>> VeranoxAPIClient::restartPublication(QString name)
{
    return actOnPublication(VeranoxAPIWrite::restartPublication, name, u"restart"_s);
}

VeranoxAPICall<VeranoxEnvironment> VeranoxAPIClient::fetchEnvironment()
{
    return get<VeranoxEnvironment>(u"/api/environment"_s);
}

VeranoxAPICall<VeranoxFeedbackResult> VeranoxAPIClient::submitFeedback(QString message, QString kind, QString contact)
{
    const VeranoxFeedback feedback{.message = std::move(message),
        .kind = std::move(kind),
        .contact = std::move(contact),
        .appVersion = m_identity.appVersion,
        .os = m_identity.os};
    return write<VeranoxFeedbackResult>(VeranoxAPIWrite::submitFeedback,
        {.method = "POST", .path = u"/api/feedback"_s, .body = encodeRecord(feedback)});
}
