#include "Service/Cli/CommandLine.h"

#include "Service/Text/ServiceProblem.h"
#include <CLI/CLI.hpp>
#include <algorithm>

namespace veranox {

namespace {

const std::string version = "veranox " VERANOX_VERSION "\n";

std::string askForHelp(const std::string &complaint)
{
    const std::string end = complaint.ends_with('.') ? " " : ". ";
    return complaint + end + "Run \"veranox --help\" to see what there is.";
}

} // namespace

Command parseCommandLine(std::vector<std::string> words)
{
    GuiServeCommand serve;
    std::string logLevelWord = "info";
    CLI::App app(
        "Keeps several tailnets joined at once and routes each request through the one that owns its name.", "veranox");
    app.set_version_flag("--version", version, "Print the version and end");
    app.require_subcommand(1);
    CLI::App &gui = *app.add_subcommand("gui", "The service behind the menu bar application");
    gui.require_subcommand(1);
    CLI::App &run = *gui.add_subcommand("serve", "Run the service until it is told to end");
    run.add_option("--listen", serve.listen, "Loopback address of the control API; port 0 lets the system pick one")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    run.add_option("--lab", serve.lab, "Run a simulated network: a file that describes it, or \"demo\"")
        ->type_name("FILE|demo")
        ->envname("VERANOX_LAB");
    run.add_option("--log-level", logLevelWord, "Least level of the lines on standard output")
        ->type_name("debug|info|warn|error")
        ->capture_default_str();
    std::ranges::reverse(words);
    try {
        app.parse(std::move(words));
    } catch (const CLI::CallForVersion &asked) {
        return PrintCommand{version};
    } catch (const CLI::Success &asked) {
        const CLI::App *subject = run.parsed() ? &run : gui.parsed() ? &gui : &app;
        return PrintCommand{subject->help()};
    } catch (const CLI::ParseError &failure) {
        throw ServiceProblem(askForHelp(failure.what()));
    }
    const std::optional<LogLevel> level = logLevel(logLevelWord);
    if (!level)
        throw ServiceProblem("The argument --log-level must be debug, info, warn or error.");
    serve.logLevel = *level;
    return serve;
}

} // namespace veranox
