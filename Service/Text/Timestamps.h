#pragma once
#include <chrono>
#include <string>

namespace veranox {

/// RFC 3339 in UTC with milliseconds: "2025-03-01T08:15:30.250Z".
std::string timestamp(std::chrono::sys_time<std::chrono::milliseconds> time);

/// The same to the second and fit for a file name: "20250301T081530Z".
std::string fileTimestamp(std::chrono::sys_time<std::chrono::milliseconds> time);

/// The same as people of this computer read it, in its own time zone and to the second: "2025-03-01 09:15:30".
std::string localTime(std::chrono::sys_time<std::chrono::milliseconds> time);

} // namespace veranox
