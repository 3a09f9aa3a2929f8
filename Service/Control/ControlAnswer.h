#pragma once
#include <boost/json/value.hpp>
#include <string>
#include <string_view>

namespace veranox {

/// What the control API answers: a status, a JSON body, and what is to happen once the answer is out.
struct ControlAnswer {
    enum class Then { GoOn, CloseConnection, EndService };

    unsigned status = 200;
    boost::json::value body;
    std::string allow; // of 405: the methods of the path
    Then then = Then::GoOn;
};

/// `{"error": text}` under a status that is not 2xx.
inline ControlAnswer refusal(unsigned status, std::string_view text)
{
    return {
        .status = status, .body = boost::json::object{{"error", text}}, .allow = "", .then = ControlAnswer::Then::GoOn};
}

} // namespace veranox
