#include "Service/Control/ControlApi.h"

#include "Service/Files/Programs.h"
#include "Service/Profiles/ProfileRecord.h"
#include <boost/json/array.hpp>

namespace veranox {

namespace json = boost::json;

struct ControlApi::Route {
    std::string_view method;
    std::string_view path;
    ControlAnswer (ControlApi::*handler)() const;
};

const ControlApi::Route ControlApi::routes[] = {
    {"GET", "profiles", &ControlApi::profiles},
    {"GET", "config", &ControlApi::config},
    {"GET", "environment", &ControlApi::environment},
    {"GET", "tunnels", &ControlApi::tunnels},
    {"GET", "publications", &ControlApi::publications},
    {"GET", "health", &ControlApi::health},
    {"POST", "shutdown", &ControlApi::shutdown},
};

namespace {

bool isPath(const RequestTarget &target, std::string_view path)
{
    return target.segments.size() == 2 && target.segments[0] == "api" && target.segments[1] == path;
}

ControlAnswer ok(json::value body)
{
    return {.status = 200, .body = std::move(body), .allow = "", .then = ControlAnswer::Then::GoOn};
}

} // namespace

ControlApi::ControlApi(
    const ConfigStore &config, const NodeEngine &nodes, Traffic &traffic, RequestGuard guard, Environment environment)
    : m_config(config),
      m_nodes(nodes),
      m_traffic(traffic),
      m_guard(std::move(guard)),
      m_environment(std::move(environment))
{
}

std::optional<ControlAnswer> ControlApi::refuseEarly(const ControlRequest &request) const
{
    return m_guard.checkSender(request);
}

ControlAnswer ControlApi::answer(const ControlRequest &request) const
{
    if (std::optional<ControlAnswer> refused = m_guard.checkSender(request))
        return *refused;
    const std::optional<RequestTarget> target = parseTarget(request.target);
    if (!target)
        return refusal(400, "The path of the request is not well formed.");
    std::string allowed;
    for (const Route &route : routes) {
        if (!isPath(*target, route.path))
            continue;
        const std::string_view method = request.method == "HEAD" ? "GET" : std::string_view(request.method);
        if (route.method == method) {
            const std::optional<ControlAnswer> refused = m_guard.checkToken(request);
            return refused ? *refused : (this->*route.handler)();
        }
        allowed += (allowed.empty() ? "" : ", ") + std::string(route.method == "GET" ? "GET, HEAD" : route.method);
    }
    if (allowed.empty())
        return refusal(404, "There is nothing at this path.");
    ControlAnswer wrongMethod = refusal(405, "This path takes only " + allowed + ".");
    wrongMethod.allow = allowed;
    return wrongMethod;
}

ControlAnswer ControlApi::profiles() const
{
    const ConfigDocument &document = m_config.document();
    json::array list;
    for (std::size_t i = 0; i < document.profiles.size(); ++i)
        list.push_back(profileRecord(document, i, m_nodes.profileStatus(document.profiles[i].first)));
    return ok(std::move(list));
}

ControlAnswer ControlApi::config() const
{
    return ok(configRecord(m_config.document()));
}

ControlAnswer ControlApi::environment() const
{
    const std::string &command = m_config.document().tailscale.tailscaledBin;
    const std::optional<std::filesystem::path> program = findProgram(command, m_environment);
    return ok(json::object{
        {"TailscaledAvailable", program.has_value()}, {"TailscaledBin", program ? program->string() : command}});
}

ControlAnswer ControlApi::tunnels() const
{
    json::array list;
    for (const auto &[name, settings] : m_config.document().tunnels)
        list.push_back(tunnelRecord(name, settings, m_traffic.tunnelStatus(name)));
    return ok(std::move(list));
}

ControlAnswer ControlApi::publications() const
{
    const ConfigDocument &document = m_config.document();
    json::array list;
    for (const auto &[name, settings] : document.publications)
        list.push_back(publicationRecord(name, settings, m_traffic.publicationStatus(name)));
    return ok(std::move(list));
}

ControlAnswer ControlApi::health() const
{
    return ok(json::object{{"status", "ok"}});
}

ControlAnswer ControlApi::shutdown() const
{
    ControlAnswer answer = ok(json::object{{"status", "stopping"}});
    answer.then = ControlAnswer::Then::EndService;
    return answer;
}

} // namespace veranox
