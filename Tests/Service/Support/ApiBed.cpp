#include "Tests/Service/Support/ApiBed.h"

#include "Service/Nodes/Lab/LabEngine.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/NoNodeEngine.h"
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/json/serialize.hpp>
#include <stdexcept>

namespace veranox::test {

namespace asio = boost::asio;

ControlAnswer awaitAnswer(ControlApi &api, ControlRequest request)
{
    asio::io_context context(1);
    std::optional<ControlAnswer> answer;
    asio::co_spawn(
        context, api.answer(std::move(request)), [&](const std::exception_ptr &failure, ControlAnswer given) {
            if (failure)
                std::rethrow_exception(failure);
            answer = std::move(given);
        });
    context.run();
    if (!answer)
        throw std::runtime_error("no answer came");
    return *answer;
}

ApiBed::ApiBed(std::string_view config, std::string_view lab)
{
    if (!config.empty())
        m_folder.write("config.json", config);
    m_store.load(m_time.wallNow());
    m_traffic.apply(m_store.snapshot());
    if (lab.empty())
        m_nodes = std::make_unique<NoNodeEngine>(m_time.wallNow());
    else
        m_nodes = std::make_unique<LabEngine>(parseLab(lab), m_time);
    ControlToken token = ControlToken::random();
    token.writeTo(m_folder.path());
    m_token = m_folder.read("control.token").substr(0, 64);
    m_api = std::make_unique<ControlApi>(parts(port, m_traffic), RequestGuard(std::move(token), port));
}

ControlParts ApiBed::parts(std::uint16_t controlPort, Traffic &traffic)
{
    return {.config = m_store,
        .nodes = *m_nodes,
        .traffic = traffic,
        .time = m_time,
        .environment = [](const std::string &) { return std::nullopt; },
        .port = controlPort,
        .folder = m_folder / "support",
        .saves = m_saves,
        .lookUps = m_lookUps,
        .log = m_log};
}

ControlRequest ApiBed::request(const std::string &method, const std::string &target, std::string body) const
{
    ControlRequest made;
    made.method = method;
    made.target = target;
    made.hosts = {"127.0.0.1:" + std::to_string(port)};
    made.tokens = {m_token};
    made.body = std::move(body);
    return made;
}

ControlAnswer ApiBed::ask(const std::string &method, const std::string &target, std::string body)
{
    return awaitAnswer(*m_api, request(method, target, std::move(body)));
}

std::string ApiBed::filesOnDisk() const
{
    std::string all;
    for (const std::string &name : m_folder.names())
        all += name + "\n" + m_folder.read(name) + "\n";
    return all;
}

std::string errorOf(const ControlAnswer &answer)
{
    const boost::json::object *body = answer.body.if_object();
    const boost::json::value *error = body ? body->if_contains("error") : nullptr;
    return error && error->is_string() ? std::string(error->get_string())
                                       : "no refusal but " + boost::json::serialize(answer.body);
}

} // namespace veranox::test
