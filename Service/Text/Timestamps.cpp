#include "Service/Text/Timestamps.h"

#include <cstdio>
#include <ctime>

namespace veranox {

namespace {

struct CivilTime {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    std::chrono::hh_mm_ss<std::chrono::milliseconds> clock;
};

CivilTime civil(std::chrono::sys_time<std::chrono::milliseconds> time)
{
    const auto midnight = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(midnight);
    return {static_cast<int>(date.year()), static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        std::chrono::hh_mm_ss(time - midnight)};
}

} // namespace

std::string timestamp(std::chrono::sys_time<std::chrono::milliseconds> time)
{
    const CivilTime at = civil(time);
    char text[40];
    const int length = std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", at.year, at.month,
        at.day, static_cast<int>(at.clock.hours().count()), static_cast<int>(at.clock.minutes().count()),
        static_cast<int>(at.clock.seconds().count()), static_cast<int>(at.clock.subseconds().count()));
    return {text, static_cast<std::size_t>(length)};
}

std::string fileTimestamp(std::chrono::sys_time<std::chrono::milliseconds> time)
{
    const CivilTime at = civil(time);
    char text[40];
    const int length = std::snprintf(text, sizeof text, "%04d%02u%02uT%02d%02d%02dZ", at.year, at.month, at.day,
        static_cast<int>(at.clock.hours().count()), static_cast<int>(at.clock.minutes().count()),
        static_cast<int>(at.clock.seconds().count()));
    return {text, static_cast<std::size_t>(length)};
}

std::string localTime(std::chrono::sys_time<std::chrono::milliseconds> time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(time));
    std::tm local{};
    if (!::localtime_r(&seconds, &local))
        return timestamp(time);
    char text[64];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local)};
}

} // namespace veranox
