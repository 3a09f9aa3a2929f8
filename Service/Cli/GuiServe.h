#pragma once
#include "Service/Cli/CommandLine.h"
#include "Service/Files/UserFolders.h"

namespace veranox {

/// Runs the service until a client or a signal ends it. Throws ServiceProblem when it cannot start.
void runGuiServe(const GuiServeCommand &command, const Environment &environment);

} // namespace veranox
