#pragma once
#include <chrono>

namespace veranox {

/// What a clock on the wall shows, in UTC.
using WallTime = std::chrono::sys_time<std::chrono::milliseconds>;

} // namespace veranox
