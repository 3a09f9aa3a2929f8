#pragma once
#include "Service/Time/TimeSource.h"

namespace veranox::test {

/// Time that stands still until a test moves it on. Begins at 2025-03-01T08:15:30Z.
class FakeTime final : public TimeSource {
public:
    std::chrono::steady_clock::time_point steadyNow() const override
    {
        return std::chrono::steady_clock::time_point(m_passed);
    }
    WallTime wallNow() const override
    {
        using namespace std::chrono;
        return WallTime(sys_days(year(2025) / March / 1) + 8h + 15min + 30s) + m_passed;
    }
    void pass(std::chrono::milliseconds time) { m_passed += time; }

private:
    std::chrono::milliseconds m_passed{0};
};

} // namespace veranox::test
