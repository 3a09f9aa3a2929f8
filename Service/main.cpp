#include "Service/Cli/CommandLine.h"
#include "Service/Cli/GuiServe.h"
#include "Service/Cli/SshHelper.h"
#include "Service/Files/StandardFiles.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/Words.h"
#include <cstdio>
#include <iostream>

namespace {

/// The one sentence on standard error with which a failed start ends.
int fail(std::string_view sentence)
{
    constexpr int badInput = 2;
    std::cerr << "veranox: " << veranox::printable(sentence) << std::endl;
    return badInput;
}

int run(const veranox::Command &command)
{
    if (const auto *print = std::get_if<veranox::PrintCommand>(&command)) {
        std::cout << print->text << std::flush;
        return std::cout ? 0 : fail("Standard output could not be written.");
    }
    veranox::runGuiServe(std::get<veranox::GuiServeCommand>(command), veranox::processEnvironment);
    return 0;
}

} // namespace

int main(int count, char **words)
{
    veranox::openStandardFiles();
    try {
        if (const std::optional<int> status = veranox::runSshHelper({words, words + count}))
            return *status;
        return run(veranox::parseCommandLine({words + 1, words + count}));
    } catch (const veranox::ServiceProblem &problem) {
        return fail(problem.what());
    } catch (const std::exception &failure) {
        return fail(std::string("Something unexpected went wrong: ") + failure.what() + ".");
    }
}
