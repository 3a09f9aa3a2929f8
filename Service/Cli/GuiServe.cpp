#include "Service/Cli/GuiServe.h"

#include "Service/Control/ControlServer.h"
#include "Service/Files/DescriptorLimit.h"
#include "Service/Files/OwnExecutable.h"
#include "Service/Log/LogBrake.h"
#include "Service/Net/LoopbackListener.h"
#include "Service/Nodes/Lab/LabConfig.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/Lab/LabGate.h"
#include "Service/Nodes/NoNodeEngine.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/ShownPath.h"
#include "Service/Traffic/NodeGate.h"
#include "Service/Traffic/NodeTraffic.h"
#include <boost/asio/signal_set.hpp>
#include <csignal>
#include <functional>
#include <memory>
#include <stdexcept>
#include <unistd.h>

namespace veranox {

namespace asio = boost::asio;

namespace {

LoopbackEndpoint listenEndpoint(const std::string &text)
{
    try {
        return parseLoopbackEndpoint(text, 0);
    } catch (const std::invalid_argument &problem) {
        throw ServiceProblem("The argument --listen " + text + " " + problem.what() + ".");
    }
}

/// The document of this run: what the file holds and what the lab brings along, with every tunnel at a fixed address.
void prepareConfig(ConfigStore &store, const std::optional<LabNetwork> &lab, std::uint16_t controlPort, WallTime now)
{
    store.load(now);
    ConfigDocument document = store.document();
    const bool grew = lab && addLabConfig(*lab, document);
    const bool assigned = assignTunnelAddresses(document, controlPort);
    if (store.isNew() || grew || assigned)
        store.save(std::move(document));
}

/// The longest that the service goes on once it was asked to end: enough for running answers and farewells, and short
/// of what a person calls hanging, whoever is being waited for.
constexpr std::chrono::seconds longestEnd{2};

/// The engine and what it lets tunnels and publications do.
struct Nodes {
    std::unique_ptr<NodeEngine> engine;
    std::unique_ptr<ForwardingGate> gate;
};

Nodes makeNodes(std::optional<LabNetwork> lab, const TimeSource &time)
{
    Nodes nodes;
    if (lab) {
        auto engine = std::make_unique<LabEngine>(std::move(*lab), time);
        nodes.gate = std::make_unique<LabGate>(*engine);
        nodes.engine = std::move(engine);
    } else {
        nodes.engine = std::make_unique<NoNodeEngine>(time.wallNow());
        nodes.gate = std::make_unique<NodeGate>(*nodes.engine);
    }
    return nodes;
}

/// Drops whatever still waits while everything that it refers to is there.
class ServiceContext : public asio::io_context {
public:
    using asio::io_context::io_context;
    void dropRest() { shutdown(); }
};

} // namespace

void runGuiServe(const GuiServeCommand &command, const Environment &environment)
{
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
    raiseDescriptorLimit();
    DescriptorLogSink output(STDOUT_FILENO);
    Log log(output, command.logLevel, logIdentifier(environment("VERANOX_SESSION_ID").value_or("")).value_or(""));
    const SystemTime time;

    // The address comes first: a service that finds it taken must leave token and configuration of the other alone.
    const LoopbackEndpoint wanted = listenEndpoint(command.listen);
    std::optional<LabNetwork> lab;
    if (!command.lab.empty())
        lab = loadLab(command.lab);
    const UserFolders folders = userFolders(environment);
    ServiceContext context(1);
    asio::signal_set signals(context, SIGINT, SIGTERM);
    asio::ip::tcp::acceptor acceptor = listenOnLoopback(context, wanted);
    const LoopbackEndpoint endpoint{wanted.host, acceptor.local_endpoint().port()};

    ConfigStore config(folders.configuration);
    prepareConfig(config, lab, endpoint.port, time.wallNow());
    ControlToken token = ControlToken::random();
    token.writeTo(folders.applicationSupport);
    const Nodes nodes = makeNodes(std::move(lab), time);
    NodeTraffic traffic(context.get_executor(), *nodes.engine, *nodes.gate, time,
        {ownExecutable(), folders.applicationSupport / "known_hosts", environment});
    LogBrake strainBrake(1, std::chrono::minutes(1));
    traffic.setStrained([&] {
        if (!strainBrake.admits(time.steadyNow()))
            return;
        const Budget::Strain strain = traffic.strain();
        log.write(LogLevel::warn, "connections_refused", "there is no room for more connections",
            {{"refused", strain.refused}, {"shed", strain.shed}});
    });
    traffic.apply(config.document());
    ControlApi api({config, *nodes.engine, traffic, time, environment, endpoint.port, folders.applicationSupport},
        RequestGuard(std::move(token), endpoint.port));

    std::function<void(std::string_view)> stop;
    ControlServer server(context, std::move(acceptor), api, config, log, ControlLimits{}, [&stop] { stop("request"); });
    stop = [&](std::string_view reason) {
        log.write(LogLevel::info, "service_stopping", "service is stopping", {{"reason", reason}});
        signals.cancel();
        traffic.stop();
        server.stop();
        context.stop();
    };
    signals.async_wait([&](const boost::system::error_code &failure, int signal) {
        if (!failure)
            stop(signal == SIGINT ? "SIGINT" : "SIGTERM");
    });
    server.start();
    log.write(LogLevel::info, "service_listening", "service is listening",
        {{"address", toText(endpoint)}, {"engine", command.lab.empty() ? "none" : "lab"},
            {"config", shownPath(config.file())}, {"config_generation", config.generation()},
            {"profiles", config.document().profiles.size()}, {"version", VERANOX_VERSION}});
    context.run();
    context.restart();
    context.run_for(longestEnd);
    const bool isDone = context.stopped();
    context.dropRest();
    log.write(LogLevel::info, "service_stopped", "service has stopped", {{"outcome", isDone ? "ok" : "cut"}});
}

} // namespace veranox
