#pragma once
#include "Service/Config/ConfigStore.h"
#include "Service/Control/ConfigWriter.h"
#include "Service/Control/ControlAnswer.h"
#include "Service/Control/ControlRequest.h"
#include "Service/Control/FeedbackBox.h"
#include "Service/Control/RequestGuard.h"
#include "Service/Control/SaveTurns.h"
#include "Service/Files/UserFolders.h"
#include "Service/Files/Worker.h"
#include "Service/Log/Log.h"
#include "Service/Nodes/NodeEngine.h"
#include "Service/Time/TimeSource.h"
#include "Service/Traffic/Traffic.h"
#include <boost/asio/awaitable.hpp>
#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>

namespace veranox {

/// What the control API works on.
struct ControlParts {
    ConfigStore &config;
    NodeEngine &nodes;
    Traffic &traffic;
    const TimeSource &time;
    Environment environment;
    std::uint16_t port; // of the control API itself
    std::filesystem::path folder; // for what the service keeps besides the configuration
    Worker &saves; // for what is written to the disk
    Worker &lookUps; // for what is only looked up there, which must not wait for the former
    Log &log;
};

/// The control API without its transport: one request in, one answer out. What it is given must outlive it, and it must
/// outlive every answer that it was asked for.
class ControlApi {
public:
    ControlApi(ControlParts parts, RequestGuard guard);

    /// What can be said before the body has come: the refusal of sender, path, method or token, or nothing. A body that
    /// nobody may send is not waited for.
    std::optional<ControlAnswer> refuseEarly(const ControlRequest &request) const;

    /// Never fails: whatever goes wrong is an answer. A refused write has changed nothing.
    boost::asio::awaitable<ControlAnswer> answer(ControlRequest request);

private:
    /// A request on its way to its handler.
    struct Call {
        ControlRequest request;
        RequestTarget target;
        std::string name; // what stands in the path where the route has a "*"
    };
    using ReadHandler = ControlAnswer (ControlApi::*)(const Call &) const;
    using Handler = ControlAnswer (ControlApi::*)(const Call &);
    using SlowHandler = boost::asio::awaitable<ControlAnswer> (ControlApi::*)(Call);
    struct Route;
    static const Route routes[];

    struct Prepared;

    /// The route of the request, or why there is none for it.
    std::variant<Prepared, ControlAnswer> prepare(ControlRequest request) const;
    boost::asio::awaitable<ControlAnswer> carryOut(ControlRequest request);

    TunnelStatus tunnelStatus(const std::string &name, const TunnelSettings &settings) const;
    PublicationStatus publicationStatus(const std::string &name, const PublicationSettings &settings) const;

    ControlAnswer statusPage(const Call &call) const;
    ControlAnswer statusStyleSheet(const Call &call) const;
    ControlAnswer profiles(const Call &call) const;
    ControlAnswer config(const Call &call) const;
    ControlAnswer tunnels(const Call &call) const;
    ControlAnswer publications(const Call &call) const;
    ControlAnswer health(const Call &call) const;

    boost::asio::awaitable<ControlAnswer> environment(Call call);
    boost::asio::awaitable<ControlAnswer> pathReport(Call call);

    boost::asio::awaitable<ControlAnswer> saveConfig(Call call);
    ControlAnswer login(const Call &call);
    ControlAnswer logout(const Call &call);
    boost::asio::awaitable<ControlAnswer> feedback(Call call);
    ControlAnswer shutdown(const Call &call);

    boost::asio::awaitable<ControlAnswer> saveTunnel(Call call);
    boost::asio::awaitable<ControlAnswer> deleteTunnel(Call call);
    boost::asio::awaitable<ControlAnswer> startTunnel(Call call);
    boost::asio::awaitable<ControlAnswer> stopTunnel(Call call);
    boost::asio::awaitable<ControlAnswer> switchTunnel(Call call, bool isDisabled);
    ControlAnswer restartTunnel(const Call &call);
    ControlAnswer setTunnelSecret(const Call &call);

    boost::asio::awaitable<ControlAnswer> savePublication(Call call);
    boost::asio::awaitable<ControlAnswer> deletePublication(Call call);
    boost::asio::awaitable<ControlAnswer> startPublication(Call call);
    boost::asio::awaitable<ControlAnswer> stopPublication(Call call);
    ControlAnswer restartPublication(const Call &call);

    boost::asio::awaitable<void> commit(ConfigDocument document);
    static void requireRoom(const Worker &worker);

    ControlParts m_parts;
    SaveTurns m_turns;
    ConfigWriter m_writer;
    FeedbackBox m_feedback;
    unsigned m_reports = 0; // under way
    RequestGuard m_guard;
};

} // namespace veranox
