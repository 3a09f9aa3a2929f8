#pragma once
#include "Service/Time/WallTime.h"
#include <chrono>

namespace veranox {

/// Tells the time.
class TimeSource {
public:
    virtual ~TimeSource() = default;
    /// Never runs backwards.
    virtual std::chrono::steady_clock::time_point steadyNow() const = 0;
    virtual WallTime wallNow() const = 0;
};

class SystemTime final : public TimeSource {
public:
    std::chrono::steady_clock::time_point steadyNow() const override { return std::chrono::steady_clock::now(); }
    WallTime wallNow() const override
    {
        return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    }
};

} // namespace veranox
