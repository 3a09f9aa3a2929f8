#pragma once
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace veranox {

enum class LogLevel { debug, info, warn, error };

/// The level of that word, in lower case; none for another word.
std::optional<LogLevel> logLevel(std::string_view word);

/// The words of a line that people read. Only a literal can be one: nothing that came from outside ever stands there.
class LogMessage {
public:
    // NOLINTNEXTLINE(google-explicit-constructor): a literal reads as what it is where a line is written
    template <std::size_t size> consteval LogMessage(const char (&text)[size]) : m_text(text, size - 1) { }
    std::string_view text() const { return m_text; }

private:
    std::string_view m_text;
};

/// One key=value field. The value may come from anywhere.
struct LogField {
    std::string_view key;
    std::string value;

    LogField(std::string_view name, std::string text) : key(name), value(std::move(text)) { }
    LogField(std::string_view name, std::string_view text) : LogField(name, std::string(text)) { }
    LogField(std::string_view name, const char *text) : LogField(name, std::string(text)) { }
    template <class Number>
        requires std::is_integral_v<Number>
    LogField(std::string_view name, Number number) : LogField(name, std::to_string(number))
    {
    }
};

using LogFields = std::vector<LogField>;

/// One line without its line feed: the words, then the fields. Whoever reads it back with "key=" behind a blank and a
/// value that ends at the next blank or, in double quotes, at the next quote, finds these fields and no others,
/// whatever the values hold: control characters and exotic blanks become blanks, a double quote becomes a single one,
/// and the equals signs of a value with blanks become colons. A long value ends in "…"; a field that would carry the
/// line beyond logLineLimit bytes is left out.
std::string logLine(LogMessage message, const LogFields &fields);

/// What a pipe takes in one piece or not at all.
inline constexpr std::size_t logLineLimit = 4095;

/// Where lines go, from whatever thread.
class LogSink {
public:
    virtual ~LogSink() = default;
    virtual void line(std::string_view line) = 0;
};

/// Writes lines to an open file without ever waiting for its reader: a line that a full pipe does not take is counted,
/// and the count stands on the next line that it takes. For several threads.
class DescriptorLogSink final : public LogSink {
public:
    explicit DescriptorLogSink(int descriptor);
    void line(std::string_view line) override;

private:
    bool write(std::string_view text) const;

    int m_descriptor;
    std::mutex m_mutex; // of a line and of what was dropped before it
    std::uint64_t m_dropped = 0;
};

/// Writes the service's log, from whatever thread. Its lines carry level, event code and component, and the session
/// where one is known.
class Log {
public:
    /// The sink must outlive the log. `sessionID` may be empty.
    Log(LogSink &sink, LogLevel least, std::string sessionID);

    void write(LogLevel level, std::string_view eventCode, LogMessage message, LogFields fields = {});
    bool writes(LogLevel level) const { return level >= m_least; }

private:
    LogSink &m_sink;
    LogLevel m_least;
    std::string m_sessionID;
};

/// The text if it is fit to be an identifier in the log, otherwise nothing: 1 to 128 letters, digits and ".", "_", ":",
/// "-".
std::optional<std::string> logIdentifier(std::string_view text);

} // namespace veranox
