#include "Service/Cli/GuiServe.h"

#include "Service/Cli/EndWatch.h"
#include "Service/Config/DocumentCheck.h"
#include "Service/Control/ControlServer.h"
#include "Service/Files/DescriptorLimit.h"
#include "Service/Files/FolderLock.h"
#include "Service/Files/OwnExecutable.h"
#include "Service/Files/Worker.h"
#include "Service/Log/LogBrake.h"
#include "Service/Net/LoopbackListener.h"
#include "Service/Nodes/Lab/LabConfig.h"
#include "Service/Nodes/Lab/LabFile.h"
#include "Service/Nodes/Lab/LabGate.h"
#include "Service/Nodes/NoNodeEngine.h"
#include "Service/Text/Refusal.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/ShownPath.h"
#include "Service/Traffic/NodeGate.h"
#include "Service/Traffic/NodeTraffic.h"
#include <boost/asio/post.hpp>
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

/// One lock for each of the two folders, as they may lie apart. A service has both or does not run.
struct FolderLocks {
    explicit FolderLocks(const UserFolders &folders)
        : applicationSupport(folders.applicationSupport, "control.token", "XDG_DATA_HOME")
    {
        std::error_code absent;
        if (!std::filesystem::equivalent(folders.applicationSupport, folders.configuration, absent))
            configuration.emplace(folders.configuration, "config.json", "XDG_CONFIG_HOME");
    }

    FolderLock applicationSupport;
    std::optional<FolderLock> configuration;
};

/// What a lab brings along must be fit for the file as well: the next start would refuse it there.
bool addLab(const LabNetwork &lab, ConfigDocument &document, std::uint16_t controlPort)
{
    if (!addLabConfig(lab, document))
        return false;
    try {
        checkDocument(document, controlPort);
    } catch (const Refusal &refused) {
        throw ServiceProblem(
            std::string("What the lab network brings along cannot be added to the configuration: ") + refused.what());
    }
    return true;
}

/// The document of this run: what the file holds and what the lab brings along, with every tunnel at a fixed address. A
/// file is held against the port that was asked for: one that the system picks is nothing that a file could mind.
void prepareConfig(ConfigStore &store, const std::optional<LabNetwork> &lab, std::uint16_t askedPort,
    std::uint16_t controlPort, WallTime now)
{
    store.load(now, askedPort);
    ConfigDocument document = store.document();
    const bool grew = lab && addLab(*lab, document, askedPort);
    const bool assigned = assignTunnelAddresses(document, controlPort);
    if (store.isNew() || grew || assigned)
        store.save(std::move(document));
}

/// How long the service goes on once it was told to end: first for running answers and farewells, then, whatever is
/// being waited for, to the cut. Both stay well below the second that the application and its user are promised.
constexpr std::chrono::milliseconds longestFarewell{550};
constexpr std::chrono::milliseconds longestEnd{800};

/// More than any client in good order leaves waiting for a disk that works.
constexpr std::size_t mostWaitingWork = 32;

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
    std::function<void(std::string_view)> stop;
    EndWatch watch(
        longestEnd,
        [&](int signal) { asio::post(context, [&stop, signal] { stop(signal == SIGINT ? "SIGINT" : "SIGTERM"); }); },
        [&] {
            log.write(LogLevel::warn, "service_cut", "something did not end in time and was left behind",
                {{"waited_ms", longestEnd.count()}});
        });
    asio::ip::tcp::acceptor acceptor = listenOnLoopback(context, wanted);
    const LoopbackEndpoint endpoint{wanted.host, acceptor.local_endpoint().port()};

    const FolderLocks locks(folders);
    ConfigStore config(folders.configuration);
    prepareConfig(config, lab, wanted.port, endpoint.port, time.wallNow());
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
    traffic.apply(config.snapshot());
    Worker saves(mostWaitingWork);
    Worker lookUps(mostWaitingWork);
    ControlApi api({config, *nodes.engine, traffic, time, environment, endpoint.port, folders.applicationSupport, saves,
                       lookUps, log},
        RequestGuard(std::move(token), endpoint.port));

    ControlServer server(context, std::move(acceptor), api, config, log, ControlLimits{}, [&stop] { stop("request"); });
    stop = [&, isStopping = false](std::string_view reason) mutable {
        if (std::exchange(isStopping, true))
            return;
        watch.begin();
        log.write(LogLevel::info, "service_stopping", "service is stopping", {{"reason", reason}});
        traffic.stop();
        server.stop();
        context.stop();
    };
    server.start();
    log.write(LogLevel::info, "service_listening", "service is listening",
        {{"address", toText(endpoint)}, {"engine", command.lab.empty() ? "none" : "lab"},
            {"config", shownPath(config.file())}, {"config_generation", config.generation()},
            {"profiles", config.document().profiles.size()}, {"version", VERANOX_VERSION}});
    context.run();
    context.restart();
    context.run_for(longestFarewell);
    const bool isDone = context.stopped();
    saves.stop();
    lookUps.stop();
    context.dropRest();
    log.write(LogLevel::info, "service_stopped", "service has stopped", {{"outcome", isDone ? "ok" : "cut"}});
}

} // namespace veranox
