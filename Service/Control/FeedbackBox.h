#pragma once
#include "Service/Time/TimeSource.h"
#include <filesystem>
#include <string>
#include <string_view>

namespace veranox {

/// Keeps what users have to say in `feedback.jsonl`, readable by this user alone: one JSON object a line, the five
/// texts as they were sent and when that was. A full file becomes `feedback.jsonl.1`, in the place of the one before
/// it. What it is given must outlive it.
class FeedbackBox {
public:
    /// Of one file.
    static constexpr std::size_t sizeLimit = 4 * 1024 * 1024;

    FeedbackBox(std::filesystem::path folder, const TimeSource &time);

    /// The line for `{"message", "kind", "contact", "appVersion", "os"}`, all texts, all of them there. Throws
    /// JsonProblem, or Refusal when a text is too long or the message is empty.
    std::string line(std::string_view body) const;

    /// Brings the line to the disk. Throws Refusal when the file cannot take it; then nothing was added. May be called
    /// on another thread.
    void keep(const std::string &line) const;

private:
    std::filesystem::path m_folder;
    const TimeSource &m_time;
};

} // namespace veranox
