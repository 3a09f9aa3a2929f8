#pragma once
#include "Service/Traffic/Traffic.h"
#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace veranox::test {

/// Carries nothing: answers what a test gives it and remembers what it was told.
class FakeTraffic final : public Traffic {
public:
    void apply(std::shared_ptr<const ConfigDocument> document) override { applied.push_back(*document); }
    void nodesChanged() override { ++changes; }
    TunnelStatus tunnelStatus(const std::string &name) const override { return valueOr(tunnels, name); }
    PublicationStatus publicationStatus(const std::string &name) const override { return valueOr(publications, name); }
    void restartTunnel(const std::string &name) override { restartedTunnels.push_back(name); }
    void restartPublication(const std::string &name) override { restartedPublications.push_back(name); }
    void setTunnelSecret(const std::string &name, std::string password) override
    {
        secrets[name] = std::move(password);
    }
    boost::asio::awaitable<boost::json::object> pathReport(PathQuestion question) override
    {
        questions.push_back(std::move(question));
        if (beforeReport)
            co_await beforeReport();
        co_return report;
    }
    void stop() override { isStopped = true; }

    std::map<std::string, TunnelStatus> tunnels;
    std::map<std::string, PublicationStatus> publications;
    boost::json::object report;
    std::function<boost::asio::awaitable<void>()> beforeReport; // what a report has to wait for

    std::vector<ConfigDocument> applied;
    int changes = 0;
    std::vector<std::string> restartedTunnels;
    std::vector<std::string> restartedPublications;
    std::map<std::string, std::string> secrets;
    std::vector<PathQuestion> questions;
    bool isStopped = false;

private:
    template <class Status> static Status valueOr(const std::map<std::string, Status> &known, const std::string &name)
    {
        const auto found = known.find(name);
        return found == known.end() ? Status{} : found->second;
    }
};

} // namespace veranox::test
