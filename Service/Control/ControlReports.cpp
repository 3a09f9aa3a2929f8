#include "Service/Control/ControlApi.h"
#include "Service/Control/QueryFields.h"
#include "Service/Text/FieldText.h"
#include "Service/Text/Refusal.h"

namespace veranox {

namespace asio = boost::asio;
namespace json = boost::json;

namespace {

PathQuestion readQuestion(const std::string &query)
{
    constexpr std::size_t longestTarget = 2048;
    constexpr NumberRange pingRange{1, 10};
    const QueryFields fields(query);
    const std::string target = fields.text("target").value_or("");
    if (target.empty())
        throw Refusal(
            Refusal::Kind::badInput, "The query needs a target: a URL, host:port, a host name or an address.");
    if (const std::optional<std::string> problem = lineProblem(target, longestTarget))
        throw Refusal(Refusal::Kind::badInput, "The target " + *problem + ".");
    PathQuestion question;
    question.target = target;
    question.netcheck = fields.flag("netcheck", question.netcheck);
    question.pingCount = static_cast<unsigned>(fields.number("ping_count", pingRange, question.pingCount));
    return question;
}

/// One more for as long as it lives.
class Counted {
public:
    explicit Counted(unsigned &count) : m_count(count) { ++m_count; }
    Counted(const Counted &) = delete;
    Counted &operator=(const Counted &) = delete;
    ~Counted() { --m_count; }

private:
    unsigned &m_count;
};

} // namespace

// Each report takes connections and seconds, so a client that asks without end gets a few at a time.
asio::awaitable<ControlAnswer> ControlApi::pathReport(Call call)
{
    constexpr unsigned mostReports = 8;
    PathQuestion question = readQuestion(call.target.query);
    if (m_reports >= mostReports)
        throw Refusal(Refusal::Kind::later, "Too many path reports are running; try again in some seconds.");
    const Counted running(m_reports);
    json::object report = co_await m_parts.traffic.pathReport(std::move(question));
    co_return success(std::move(report));
}

ControlAnswer ControlApi::feedback(const Call &call)
{
    m_feedback.add(call.request.body);
    return success(json::object{{"status", "saved"}});
}

} // namespace veranox
