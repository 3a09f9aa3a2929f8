#include "Service/Config/ConfigBody.h"
#include "Service/Config/ConfigCheck.h"
#include "Service/Control/ControlApi.h"
#include "Service/Control/NamedChanges.h"
#include "Service/Control/QueryFields.h"
#include "Service/Text/Refusal.h"
#include "Service/Text/ShownPath.h"

namespace veranox {

namespace asio = boost::asio;
namespace json = boost::json;

namespace {

void requireProfile(const ConfigDocument &document, const std::string &name)
{
    if (!findNamed(document.profiles, name))
        throw Refusal(Refusal::Kind::unknown, "The profile " + shownName(name) + " is not configured.");
}

json::object actionRecord(const std::string &profile, std::string_view action, const NodeAction &result)
{
    return {{"profile", profile}, {"action", action}, {"ok", result.ok}, {"output", result.output},
        {"error", result.error}, {"auth_url", result.authURL}};
}

/// A tunnel or publication that stands on a profile that would go.
template <class Settings>
void refuseOrphans(
    std::string_view kind, const NamedList<Settings> &list, const ConfigDocument &current, const ConfigDocument &next)
{
    for (const auto &[name, settings] : list)
        if (findNamed(current.profiles, settings.profile) && !findNamed(next.profiles, settings.profile))
            throw Refusal(Refusal::Kind::conflict,
                "The profile \"" + settings.profile + "\" is still used by " + std::string(kind) + " \"" + name
                    + "\"; delete that first, or save with force=true.");
}

} // namespace

asio::awaitable<ControlAnswer> ControlApi::saveConfig(Call call)
{
    const SaveTurns::Turn turn = co_await m_turns.take();
    const bool isForced = QueryFields(call.target.query).flag("force", false);
    const ConfigDocument &current = m_parts.config.document();
    ConfigDocument next = readConfigBody(call.request.body, current);
    checkConfig(next, m_parts.port);
    if (!isForced) {
        refuseOrphans("tunnel", next.tunnels, current, next);
        refuseOrphans("publication", next.publications, current, next);
    }
    using IfChanged = ConfigWriter::IfChanged;
    co_await m_writer.commit(std::move(next), isForced ? IfChanged::keepCopy : IfChanged::refuse);
    co_return success(json::object{{"status", "saved"}, {"path", shownPath(m_parts.config.file())}});
}

ControlAnswer ControlApi::login(const Call &call)
{
    requireProfile(m_parts.config.document(), call.name);
    const NodeAction result = m_parts.nodes.login(call.name);
    m_parts.traffic.nodesChanged();
    return success(actionRecord(call.name, "login", result));
}

ControlAnswer ControlApi::logout(const Call &call)
{
    requireProfile(m_parts.config.document(), call.name);
    const NodeAction result = m_parts.nodes.logout(call.name);
    m_parts.traffic.nodesChanged();
    return success(actionRecord(call.name, "logout", result));
}

ControlAnswer ControlApi::shutdown(const Call &)
{
    ControlAnswer answer = success(json::object{{"status", "stopping"}});
    answer.then = ControlAnswer::Then::endService;
    return answer;
}

} // namespace veranox
