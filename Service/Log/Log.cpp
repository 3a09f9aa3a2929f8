#include "Service/Log/Log.h"

#include "Service/Text/Words.h"
#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace veranox {

namespace {

constexpr std::array<std::string_view, 4> levelWords{"debug", "info", "warn", "error"};
constexpr std::size_t valueLimit = 1024;

std::string fieldValue(const std::string &value)
{
    std::string text = shortened(printable(value), valueLimit);
    std::ranges::replace(text, '"', '\'');
    const bool needsQuotes = text.empty() || text.find(' ') != std::string::npos;
    if (!needsQuotes)
        return text;
    std::ranges::replace(text, '=', ':');
    return "\"" + text + "\"";
}

bool isIdentifierCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')
        || std::string_view("._:-").find(c) != std::string_view::npos;
}

} // namespace

std::optional<LogLevel> logLevel(std::string_view word)
{
    const auto found = std::ranges::find(levelWords, word);
    if (found == levelWords.end())
        return std::nullopt;
    return static_cast<LogLevel>(found - levelWords.begin());
}

std::string logLine(LogMessage message, const LogFields &fields)
{
    std::string line(message.text());
    for (const LogField &field : fields) {
        const std::string text = std::string(field.key) + "=" + fieldValue(field.value);
        if (line.size() + 1 + text.size() <= logLineLimit)
            line.append(line.empty() ? "" : " ").append(text);
    }
    return line;
}

DescriptorLogSink::DescriptorLogSink(int descriptor) : m_descriptor(descriptor) { }

bool DescriptorLogSink::write(std::string_view text) const
{
    pollfd ready{m_descriptor, POLLOUT, 0};
    if (::poll(&ready, 1, 0) <= 0 || (ready.revents & POLLOUT) == 0)
        return false;
    for (;;) {
        const ssize_t count = ::write(m_descriptor, text.data(), text.size());
        if (count >= 0 || errno != EINTR)
            return std::cmp_equal(count, text.size());
    }
}

void DescriptorLogSink::line(std::string_view line)
{
    const std::scoped_lock lock(m_mutex);
    if (m_dropped > 0
        && write(logLine("lines of the log were lost, as nobody read them",
                     {{"level", "warn"}, {"event_code", "log_lines_lost"}, {"component", "local_service"},
                         {"count", m_dropped}})
            + "\n"))
        m_dropped = 0;
    if (m_dropped > 0 || !write(std::string(line) + "\n"))
        ++m_dropped;
}

Log::Log(LogSink &sink, LogLevel least, std::string sessionID)
    : m_sink(sink),
      m_least(least),
      m_sessionID(std::move(sessionID))
{
}

void Log::write(LogLevel level, std::string_view eventCode, LogMessage message, LogFields fields)
{
    if (!writes(level))
        return;
    LogFields all{{"level", levelWords.at(static_cast<std::size_t>(level))}, {"event_code", eventCode},
        {"component", "local_service"}};
    if (!m_sessionID.empty())
        all.emplace_back("session_id", m_sessionID);
    std::ranges::move(fields, std::back_inserter(all));
    m_sink.line(logLine(message, all));
}

std::optional<std::string> logIdentifier(std::string_view text)
{
    const bool fits = !text.empty() && text.size() <= 128 && std::ranges::all_of(text, isIdentifierCharacter);
    return fits ? std::optional<std::string>(text) : std::nullopt;
}

} // namespace veranox
