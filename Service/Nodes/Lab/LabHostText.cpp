#include "Service/Nodes/Lab/LabHostText.h"

#include "Service/Json/JsonProblem.h"
#include "Service/Net/LoopbackEndpoint.h"
#include <stdexcept>

namespace veranox {

namespace {

LabHost addressHost(const std::string &text)
{
    if (text == "127.0.0.1" || text == "::1")
        return {LabHost::Kind::address, text, 0};
    const LoopbackEndpoint endpoint = parseLoopbackEndpoint(text, 1);
    return {LabHost::Kind::address, endpoint.host, endpoint.port};
}

} // namespace

LabHost readLabHost(const boost::json::value &value, const std::string &place)
{
    if (const boost::json::string *text = value.if_string()) {
        if (*text == "site")
            return {LabHost::Kind::site, "", 0};
        if (*text == "echo")
            return {LabHost::Kind::echo, "", 0};
        if (*text == "blackhole")
            return {LabHost::Kind::blackhole, "", 0};
        try {
            return addressHost(std::string(*text));
        } catch (const std::invalid_argument &) {
            // Told below, together with the words.
        }
    }
    throw JsonProblem(place, R"(must be "site", "echo", "blackhole" or a loopback address such as "127.0.0.1:8080")");
}

} // namespace veranox
