#include "Service/Control/ControlApi.h"
#include "Service/Control/ReportQuery.h"
#include "Service/Text/Refusal.h"

namespace veranox {

namespace asio = boost::asio;
namespace json = boost::json;

namespace {

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
    PathQuestion question = readPathQuestion(call.target.query);
    if (m_reports >= mostReports)
        throw Refusal(Refusal::Kind::later, "Too many path reports are running; try again in some seconds.");
    const Counted running(m_reports);
    json::object report = co_await m_parts.traffic.pathReport(std::move(question));
    co_return success(std::move(report));
}

asio::awaitable<ControlAnswer> ControlApi::feedback(Call call)
{
    std::string line = m_feedback.line(call.request.body);
    requireRoom(m_parts.saves);
    co_await m_parts.saves.run([box = m_feedback, line = std::move(line)] { box.keep(line); });
    co_return success(json::object{{"status", "saved"}});
}

} // namespace veranox
