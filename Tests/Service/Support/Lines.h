#pragma once
#include "Service/Log/Log.h"
#include <string>
#include <string_view>
#include <vector>

namespace veranox::test {

/// Keeps what is logged.
class Lines final : public LogSink {
public:
    void line(std::string_view line) override { lines.emplace_back(line); }
    std::vector<std::string> lines; // to be read once whoever writes has ended
};

} // namespace veranox::test
