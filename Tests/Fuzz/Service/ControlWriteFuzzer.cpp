#include "Service/Config/ConfigDocument.h"
#include "Service/Json/JsonText.h"
#include "Tests/Service/Support/ApiBed.h"
#include <cstdlib>
#include <set>
#include <sstream>

namespace {

using namespace veranox;

constexpr std::string_view file = R"({"Version": 1, "Router": {}, "Future": 1,
    "Tailscale": {"TailscaleBin": "tailscale", "TailscaledBin": "tailscaled"},
    "Paths": {"AppSupportDir": "~/a", "ConfigDir": "~/c"},
    "Security": {"RequireLoopbackListeners": true, "AllowCrossProfileFallback": false, "AllowIPLiterals": false,
        "AllowUnknownTSNet": false},
    "Profiles": {"work": {"Suffixes": [".work.ts.net"]}, "home": {"Suffixes": [".home.ts.net"]}},
    "Tunnels": {"db": {"Profile": "work", "Target": "db:5432", "Listen": "127.0.0.1:43300"},
        "deep": {"Profile": "work", "Target": "deep:1", "Listen": "127.0.0.1:43301", "Mode": "ssh",
            "SSH": {"Bastion": "b", "User": "u", "Auth": "password", "IdentityFile": ""}}},
    "Publications": {"web": {"Profile": "work", "Target": "127.0.0.1:8080", "Port": 443}}})";

/// What holds of every configuration that the writes can lead to.
void checkDocument(const ConfigDocument &document)
{
    std::set<std::string> addresses;
    for (const auto &[name, tunnel] : document.tunnels)
        if (tunnel.listen.empty() || !addresses.insert(tunnel.listen).second)
            std::abort();
    std::set<std::pair<std::string, std::int64_t>> endpoints;
    for (const auto &[name, publication] : document.publications)
        if (!endpoints.emplace(publication.profile, publication.port).second)
            std::abort();
}

/// One request after the other; each write is whole or has not happened.
void carryOut(test::ApiBed &bed, const std::string &method, const std::string &target, const std::string &body)
{
    const std::string before = bed.folder().read("config.json");
    const std::uint64_t generation = bed.store().generation();
    const ControlAnswer answer = bed.ask(method, target, body);
    const bool isRefused = answer.status >= 400;
    if (isRefused && !answer.body.at("error").is_string())
        std::abort();
    const bool isSavedThough = answer.status == 503;
    const std::string after = bed.folder().read("config.json");
    if (isRefused && !isSavedThough && (after != before || bed.store().generation() != generation))
        std::abort();
    if (after == before)
        return;
    const ConfigDocument written = parseConfig(after);
    checkDocument(written);
    if (configRecord(written) != configRecord(bed.store().document()) || !written.asRead.contains("Future"))
        std::abort();
}

} // namespace

/// The input is a list of requests with the right token: "METHOD /target" lines, each with the body in the next line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr int mostRequests = 8;
    test::ApiBed bed(file);
    std::istringstream lines(std::string(reinterpret_cast<const char *>(data), size));
    std::string request;
    std::string body;
    for (int i = 0; i < mostRequests && std::getline(lines, request); ++i) {
        std::getline(lines, body);
        const std::size_t blank = std::min(request.find(' '), request.size());
        carryOut(bed, request.substr(0, blank), request.substr(std::min(blank + 1, request.size())), body);
    }
    return 0;
}
