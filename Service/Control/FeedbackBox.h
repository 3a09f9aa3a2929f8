#pragma once
#include "Service/Time/TimeSource.h"
#include <filesystem>
#include <string_view>

namespace veranox {

/// Keeps what users have to say in `feedback.jsonl`, readable by this user alone: one JSON object a line, the five
/// texts as they were sent and when that was. What it is given must outlive it.
class FeedbackBox {
public:
    /// Beyond this the file takes no more.
    static constexpr std::size_t sizeLimit = 4 * 1024 * 1024;

    FeedbackBox(std::filesystem::path folder, const TimeSource &time);

    /// Takes `{"message", "kind", "contact", "appVersion", "os"}`, all texts, all of them there. Throws JsonProblem, or
    /// Refusal when a text is too long, the message is empty or the file cannot take more; then nothing was added.
    void add(std::string_view body) const;

private:
    std::filesystem::path m_folder;
    const TimeSource &m_time;
};

} // namespace veranox
