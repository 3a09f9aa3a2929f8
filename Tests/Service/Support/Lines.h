#pragma once
#include "Service/Log/Log.h"
#include <atomic>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace veranox::test {

/// Keeps what is logged.
class Lines final : public LogSink {
public:
    void line(std::string_view line) override
    {
        if (fails)
            throw std::bad_alloc();
        lines.emplace_back(line);
    }
    std::atomic<bool> fails = false; // as when there is no memory for a line
    std::vector<std::string> lines; // to be read once whoever writes has ended
};

} // namespace veranox::test
