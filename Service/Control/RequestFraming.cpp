#include "Service/Control/RequestFraming.h"

#include <algorithm>
#include <boost/beast/core/string.hpp>
#include <boost/beast/http/rfc7230.hpp>

namespace veranox {

namespace beast = boost::beast;
namespace http = boost::beast::http;

std::vector<std::string> allFields(const http::fields &fields, std::string_view name)
{
    std::vector<std::string> values;
    const auto [begin, end] = fields.equal_range(name);
    for (auto field = begin; field != end; ++field)
        values.emplace_back(field->value());
    return values;
}

bool hasUnknownCoding(const http::fields &fields)
{
    const std::vector<std::string> codings = allFields(fields, "Transfer-Encoding");
    return codings.size() > 1 || (codings.size() == 1 && !beast::iequals(codings.front(), "chunked"));
}

bool asksToClose(const http::fields &fields)
{
    return std::ranges::any_of(allFields(fields, "Connection"),
        [](const std::string &value) { return http::token_list(value).exists("close"); });
}

} // namespace veranox
