#pragma once
#include <boost/json/value.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace veranox {

/// What a browser draws.
struct WebDocument {
    std::string type; // of its content
    std::string policy; // what the browser may do with it, as a Content-Security-Policy
    std::string text;
};

/// What the control API answers: a status, a JSON body, and what is to happen once the answer is out.
struct ControlAnswer {
    enum class Then { goOn, closeConnection, endService };

    unsigned status = 200;
    boost::json::value body;
    std::optional<WebDocument> document = std::nullopt; // in place of the body
    std::string allow; // of 405: the methods of the path
    Then then = Then::goOn;
};

/// 200 with that body.
inline ControlAnswer success(boost::json::value body)
{
    return {.status = 200, .body = std::move(body), .allow = "", .then = ControlAnswer::Then::goOn};
}

/// `{"error": text}` under a status that is not 2xx.
inline ControlAnswer refusal(unsigned status, std::string_view text)
{
    return {
        .status = status, .body = boost::json::object{{"error", text}}, .allow = "", .then = ControlAnswer::Then::goOn};
}

/// 200 with a document in place of JSON.
inline ControlAnswer success(WebDocument document)
{
    ControlAnswer answer;
    answer.document = std::move(document);
    return answer;
}

} // namespace veranox
