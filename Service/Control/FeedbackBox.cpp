#include "Service/Control/FeedbackBox.h"

#include "Service/Files/Folder.h"
#include "Service/Json/JsonReader.h"
#include "Service/Json/JsonText.h"
#include "Service/Json/StrictBody.h"
#include "Service/Text/Refusal.h"
#include "Service/Text/ShownPath.h"
#include "Service/Text/Timestamps.h"
#include <system_error>

namespace veranox {

namespace json = boost::json;

namespace {

struct Field {
    std::string_view key;
    std::size_t mostBytes;
};

// A page or two of text, the longest address of a mailbox, and room for the words around a version.
constexpr Field fields[] = {{"message", 20000}, {"kind", 64}, {"contact", 320}, {"appVersion", 128}, {"os", 128}};

json::object readFeedback(std::string_view text)
{
    const json::value body = parseJson(text);
    JsonReader reader(body, "");
    json::object feedback;
    for (const Field &field : fields)
        feedback.emplace(field.key, reader.text(field.key));
    refuseUnknownFields(body, feedback, "");
    for (const Field &field : fields)
        if (feedback.at(field.key).get_string().size() > field.mostBytes)
            throw Refusal(Refusal::Kind::badInput,
                "The field " + std::string(field.key) + " has more than " + std::to_string(field.mostBytes)
                    + " bytes.");
    if (feedback.at("message").get_string().empty())
        throw Refusal(Refusal::Kind::badInput, "The field message is empty.");
    return feedback;
}

} // namespace

FeedbackBox::FeedbackBox(std::filesystem::path folder, const TimeSource &time)
    : m_folder(std::move(folder)),
      m_time(time)
{
}

std::string FeedbackBox::line(std::string_view body) const
{
    json::object line = readFeedback(body);
    line.emplace("receivedAt", timestamp(m_time.wallNow()));
    return compactJson(line);
}

void FeedbackBox::keep(const std::string &line) const
{
    const std::string name = "feedback.jsonl";
    const std::string former = name + ".1";
    constexpr unsigned ownerReadsAndWrites = 0600;
    constexpr std::size_t lineEnds = 2; // its own, and that of a line before it that has none
    try {
        const Folder folder = Folder::openOrMake(m_folder, true);
        if (folder.sizeOf(name) + line.size() + lineEnds > sizeLimit) {
            if (folder.contains(former))
                folder.remove(former);
            folder.rename(name, former);
        }
        folder.appendLine(name, line, sizeLimit, ownerReadsAndWrites);
    } catch (const std::system_error &failure) {
        throw Refusal(Refusal::Kind::later,
            "The feedback could not be kept in " + shownPath(m_folder / name) + " (" + failure.what() + ").");
    }
}

} // namespace veranox
