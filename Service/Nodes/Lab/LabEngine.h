#pragma once
#include "Service/Nodes/Lab/LabDialer.h"
#include "Service/Nodes/Lab/LabNetwork.h"
#include "Service/Nodes/Lab/LabPhase.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Time/TimeSource.h"
#include <map>

namespace veranox {

/// Runs the nodes of a simulated network. What it says depends on the network, on the time since its start and on who
/// was signed in and out when, and on nothing else.
class LabEngine final : public NodeEngine {
public:
    /// The time must outlive the engine, which starts now.
    LabEngine(LabNetwork network, const TimeSource &time);

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

    const LabNetwork &network() const { return m_network; }
    /// The time since its start, and the moments of a time counted from there.
    LabTime elapsed() const;
    std::chrono::steady_clock::time_point steadyTime(LabTime moment) const { return m_steadyStart + moment; }
    WallTime wallTime(LabTime moment) const { return m_wallStart + moment; }
    /// How the node of that profile fares now.
    LabPhase nodePhase(const std::string &name, const LabProfile &profile) const;

private:
    LabSession sessionOf(const std::string &profile) const;

    LabNetwork m_network;
    LabDialer m_dialer{m_network};
    std::map<std::string, LabSession> m_sessions; // of the profiles that were signed in or out
    const TimeSource &m_time;
    std::chrono::steady_clock::time_point m_steadyStart;
    WallTime m_wallStart;
};

} // namespace veranox
