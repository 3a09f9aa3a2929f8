#include "Service/Net/PortInquiry.h"

#include "Service/Net/PortHolder.h"
#include <boost/asio/post.hpp>

namespace veranox {

namespace asio = boost::asio;

namespace {

PortObstacle obstacleAt(const LoopbackEndpoint &endpoint)
{
    const std::string address = "The address " + toText(endpoint) + " is ";
    const PortUse use = portUse(endpoint);
    if (use == PortUse::passing)
        return {
            address + "used by an outgoing connection at the moment; it will be taken as soon as it is free.", true};
    if (use == PortUse::none)
        return {address + "in use by another program, which the system does not tell.", false};
    const std::optional<PortHolder> holder = findPortHolder(endpoint);
    const std::string by = holder ? holder->program + " (process " + std::to_string(holder->process) + ")"
                                  : "another program, which the system does not tell";
    return {address + "taken by " + by + ".", false};
}

} // namespace

PortInquiry::~PortInquiry()
{
    m_worker.stop();
    m_worker.join();
}

void PortInquiry::ask(const LoopbackEndpoint &endpoint, const std::shared_ptr<Answer> &answer)
{
    const std::weak_ptr<Answer> wanted = answer;
    asio::post(m_worker, [executor = m_answers, endpoint, wanted] {
        asio::post(executor, [wanted, obstacle = obstacleAt(endpoint)] {
            if (const auto tell = wanted.lock())
                (*tell)(obstacle);
        });
    });
}

} // namespace veranox
