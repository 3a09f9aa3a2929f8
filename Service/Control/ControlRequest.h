#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veranox {

/// What the control API looks at in an HTTP request.
struct ControlRequest {
    std::string method;
    std::string target; // path and query as sent
    std::vector<std::string> hosts; // every Host header
    std::vector<std::string> origins; // every Origin header
    std::vector<std::string> sites; // every Sec-Fetch-Site header
    std::vector<std::string> tokens; // every X-Veranox-Token header
    std::string correlationID; // X-Correlation-ID, empty when absent
    std::string attempt; // X-Veranox-Attempt, empty when absent
    std::string body;

    bool isRead() const { return method == "GET" || method == "HEAD"; }
};

/// A request target in its parts.
struct RequestTarget {
    std::vector<std::string> segments; // of the path, percent-decoded
    std::string query; // as sent, without the "?"

    bool operator==(const RequestTarget &) const = default;
};

/// The text with its %XX escapes resolved. Nothing when an escape is none or hides a zero byte, and when what comes out
/// is no UTF-8.
std::optional<std::string> percentDecoded(std::string_view text);

/// Takes "/api/tunnels/a%20b?x=y" apart. Nothing for what does not begin with a slash, has a bad escape, hides a slash
/// or a zero byte in one, or has a path that is no UTF-8.
std::optional<RequestTarget> parseTarget(std::string_view target);

} // namespace veranox
