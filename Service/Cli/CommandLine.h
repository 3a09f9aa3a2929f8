#pragma once
#include "Service/Log/Log.h"
#include <string>
#include <variant>
#include <vector>

namespace veranox {

/// `veranox gui serve`.
struct GuiServeCommand {
    std::string listen = "127.0.0.1:43200";
    std::string lab; // file or "demo"; empty when not given
    LogLevel logLevel = LogLevel::info;

    bool operator==(const GuiServeCommand &) const = default;
};

/// `--help` and `--version`: a text for standard output and nothing else.
struct PrintCommand {
    std::string text;

    bool operator==(const PrintCommand &) const = default;
};

using Command = std::variant<GuiServeCommand, PrintCommand>;

/// Reads the words behind the program's name. Throws ServiceProblem for what cannot be understood.
Command parseCommandLine(std::vector<std::string> words);

} // namespace veranox
