#include "Service/Control/ReportQuery.h"

#include "Service/Control/QueryFields.h"
#include "Service/Text/FieldText.h"
#include "Service/Text/Refusal.h"
#include <algorithm>

namespace veranox {

namespace {

constexpr std::string_view netcheckKey = "netcheck";
constexpr std::string_view pingCountKey = "ping_count";

/// The query in its two kinds, both as sent.
struct Parts {
    std::string_view target;
    std::string options;
};

std::string_view keyOf(std::string_view field)
{
    return field.substr(0, field.find('='));
}

/// Where the value of the field "target" begins; behind the end when there is none.
std::size_t targetBegin(std::string_view query)
{
    constexpr std::string_view begin = "target=";
    std::size_t field = 0;
    while (field < query.size() && !query.substr(field).starts_with(begin))
        field = std::min(query.find('&', field), query.size() - 1) + 1;
    return std::min(field + begin.size(), query.size());
}

/// Moves the options that end the target over to the others: each key once, as what stands before is the target's own.
void takeOptionsFromEnd(Parts &parts)
{
    std::vector<std::string_view> keys{netcheckKey, pingCountKey};
    for (;;) {
        const std::size_t separator = parts.target.rfind('&');
        if (separator == std::string_view::npos)
            return;
        const std::string_view field = parts.target.substr(separator + 1);
        if (std::erase(keys, keyOf(field)) == 0)
            return;
        parts.options.append("&").append(field);
        parts.target = parts.target.substr(0, separator);
    }
}

Parts partsOf(std::string_view query)
{
    const std::size_t begin = targetBegin(query);
    Parts parts{query.substr(begin), std::string(query.substr(0, begin))};
    takeOptionsFromEnd(parts);
    return parts;
}

[[noreturn]] void refuse(const std::string &sentence)
{
    throw Refusal(Refusal::Kind::badInput, sentence);
}

} // namespace

PathQuestion readPathQuestion(std::string_view query)
{
    constexpr std::size_t longestTarget = 2048;
    constexpr NumberRange pingRange{1, 10};
    const Parts parts = partsOf(query);
    const std::string target = decodedQuery(parts.target);
    const QueryFields options(parts.options);
    if (target.empty())
        refuse("The query needs a target: a URL, host:port, a host name or an address.");
    if (const std::optional<std::string> problem = lineProblem(target, longestTarget))
        refuse("The target " + *problem + ".");
    PathQuestion question;
    question.target = target;
    question.netcheck = options.flag(netcheckKey, question.netcheck);
    question.pingCount = static_cast<unsigned>(options.number(pingCountKey, pingRange, question.pingCount));
    return question;
}

} // namespace veranox
