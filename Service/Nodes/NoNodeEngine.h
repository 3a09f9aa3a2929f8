#pragma once
#include "Service/Nodes/NodeEngine.h"

namespace veranox {

/// Stands where no engine was chosen: nothing runs, and everything says why.
class NoNodeEngine final : public NodeEngine {
public:
    explicit NoNodeEngine(WallTime started);

    NodeStatus profileStatus(const std::string &profile) const override;
    NodeAction login(const std::string &profile) override;
    NodeAction logout(const std::string &profile) override;
    std::optional<std::chrono::steady_clock::time_point> nextChange() const override;
    std::string hostProblem(const std::string &profile, const std::string &host) const override;
    std::vector<std::string> resolve(const std::string &profile, const std::string &host) const override;
    NodeNames nodeNames(const std::string &profile, const std::string &hostname) const override;
    boost::asio::awaitable<boost::asio::ip::tcp::socket> dial(
        std::string profile, std::string host, std::uint16_t port) override;
    NodePort openPort(const boost::asio::any_io_executor &executor, const std::string &profile,
        const std::string &hostname, std::uint16_t port) override;
    void stop() override;

private:
    WallTime m_started;
};

} // namespace veranox
