#include "Service/Control/ControlApi.h"

#include "Service/Json/JsonProblem.h"
#include "Service/Page/StatusPage.h"
#include "Service/Text/Refusal.h"
#include "Service/Text/ServiceProblem.h"
#include <exception>
#include <span>

namespace veranox {

namespace asio = boost::asio;

struct ControlApi::Route {
    std::string_view method;
    std::string_view path; // "*" stands for a name
    std::variant<ReadHandler, Handler, SlowHandler> handler;
};

struct ControlApi::Prepared {
    std::variant<ReadHandler, Handler, SlowHandler> handler;
    Call call;
};

const ControlApi::Route ControlApi::routes[] = {
    {"GET", "/", &ControlApi::statusPage},
    {"GET", statusStylePath, &ControlApi::statusStyleSheet},
    {"GET", "/api/profiles", &ControlApi::profiles},
    {"POST", "/api/profiles/*/login", &ControlApi::login},
    {"POST", "/api/profiles/*/logout", &ControlApi::logout},
    {"GET", "/api/config", &ControlApi::config},
    {"POST", "/api/config", &ControlApi::saveConfig},
    {"GET", "/api/environment", &ControlApi::environment},
    {"GET", "/api/tunnels", &ControlApi::tunnels},
    {"POST", "/api/tunnels", &ControlApi::saveTunnel},
    {"DELETE", "/api/tunnels/*", &ControlApi::deleteTunnel},
    {"POST", "/api/tunnels/*/start", &ControlApi::startTunnel},
    {"POST", "/api/tunnels/*/stop", &ControlApi::stopTunnel},
    {"POST", "/api/tunnels/*/restart", &ControlApi::restartTunnel},
    {"POST", "/api/tunnels/*/secret", &ControlApi::setTunnelSecret},
    {"GET", "/api/publications", &ControlApi::publications},
    {"POST", "/api/publications", &ControlApi::savePublication},
    {"DELETE", "/api/publications/*", &ControlApi::deletePublication},
    {"POST", "/api/publications/*/start", &ControlApi::startPublication},
    {"POST", "/api/publications/*/stop", &ControlApi::stopPublication},
    {"POST", "/api/publications/*/restart", &ControlApi::restartPublication},
    {"GET", "/api/reports/path", &ControlApi::pathReport},
    {"POST", "/api/feedback", &ControlApi::feedback},
    {"GET", "/api/health", &ControlApi::health},
    {"POST", "/api/shutdown", &ControlApi::shutdown},
};

namespace {

/// More than an application sends and a disk that works leaves waiting.
constexpr std::size_t mostWaitingSaves = 16;

/// Whether the segments are those of the path; what stands for the "*" goes into `name`.
bool isPath(std::span<const std::string> segments, std::string_view path, std::string &name)
{
    path.remove_prefix(1);
    for (const std::string &segment : segments) {
        const std::string_view expected = path.substr(0, path.find('/'));
        if (expected == "*" && !segment.empty())
            name = segment;
        else if (expected != segment)
            return false;
        path.remove_prefix(std::min(path.size(), expected.size() + 1));
        if (path.empty())
            return &segment == &segments.back();
    }
    return false;
}

ControlAnswer refusalOf(const std::exception_ptr &problem)
{
    constexpr unsigned badRequest = 400;
    constexpr unsigned failed = 500;
    try {
        std::rethrow_exception(problem);
    } catch (const Refusal &refused) {
        return refusal(static_cast<unsigned>(refused.kind), refused.what());
    } catch (const JsonValueProblem &value) {
        return refusal(badRequest, value.place + " " + value.text + ".");
    } catch (const JsonProblem &body) {
        return refusal(badRequest, "decoding JSON body: " + body.place + ": " + body.text + ".");
    } catch (const ServiceProblem &notSaved) {
        return refusal(failed, notSaved.what());
    } catch (const std::exception &unexpected) {
        return refusal(failed, std::string("Something unexpected went wrong: ") + unexpected.what() + ".");
    }
}

} // namespace

ControlApi::ControlApi(ControlParts parts, RequestGuard guard)
    : m_parts(std::move(parts)),
      m_turns(mostWaitingSaves),
      m_writer(m_parts.config, m_parts.traffic, m_parts.time, m_parts.saves, m_parts.log),
      m_feedback(m_parts.folder, m_parts.time),
      m_guard(std::move(guard))
{
}

std::optional<ControlAnswer> ControlApi::refuseEarly(const ControlRequest &request) const
{
    const std::variant<Prepared, ControlAnswer> prepared = prepare(request);
    const ControlAnswer *refused = std::get_if<ControlAnswer>(&prepared);
    return refused ? std::optional(*refused) : std::nullopt;
}

std::variant<ControlApi::Prepared, ControlAnswer> ControlApi::prepare(ControlRequest request) const
{
    if (std::optional<ControlAnswer> refused = m_guard.checkSender(request))
        return *refused;
    std::optional<RequestTarget> target = parseTarget(request.target);
    if (!target)
        return refusal(400, "The path of the request is not well formed.");
    const std::string_view method = request.method == "HEAD" ? "GET" : std::string_view(request.method);
    std::string name;
    std::string allowed;
    for (const Route &route : routes) {
        if (!isPath(target->segments, route.path, name))
            continue;
        if (route.method == method) {
            if (std::optional<ControlAnswer> refused = m_guard.checkToken(request))
                return *refused;
            return Prepared{route.handler, {std::move(request), std::move(*target), std::move(name)}};
        }
        allowed += (allowed.empty() ? "" : ", ") + std::string(route.method == "GET" ? "GET, HEAD" : route.method);
    }
    if (allowed.empty())
        return refusal(404, "There is nothing at this path.");
    ControlAnswer wrongMethod = refusal(405, "This path takes only " + allowed + ".");
    wrongMethod.allow = allowed;
    return wrongMethod;
}

void ControlApi::requireRoom(const Worker &worker)
{
    if (!worker.hasRoom())
        throw Refusal(Refusal::Kind::later, "The disk does not answer; try again in some seconds.");
}

/// For the writes that change one thing: they never go over what another program wrote into the file.
asio::awaitable<void> ControlApi::commit(ConfigDocument document)
{
    co_await m_writer.commit(std::move(document), ConfigWriter::IfChanged::refuse);
}

asio::awaitable<ControlAnswer> ControlApi::carryOut(ControlRequest request)
{
    std::variant<Prepared, ControlAnswer> prepared = prepare(std::move(request));
    Prepared *ready = std::get_if<Prepared>(&prepared);
    if (!ready)
        co_return std::get<ControlAnswer>(std::move(prepared));
    if (const ReadHandler *read = std::get_if<ReadHandler>(&ready->handler))
        co_return (this->**read)(ready->call);
    if (const Handler *handler = std::get_if<Handler>(&ready->handler))
        co_return (this->**handler)(ready->call);
    co_return co_await (this->*std::get<SlowHandler>(ready->handler))(std::move(ready->call));
}

asio::awaitable<ControlAnswer> ControlApi::answer(ControlRequest request)
{
    std::exception_ptr problem;
    try {
        co_return co_await carryOut(std::move(request));
    } catch (...) {
        problem = std::current_exception();
    }
    co_return refusalOf(problem);
}

} // namespace veranox
