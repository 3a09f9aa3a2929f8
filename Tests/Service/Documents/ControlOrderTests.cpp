#include "Service/Control/ControlLimits.h"
#include "Tests/Service/Support/Document.h"
#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/RunningServer.h"
#include <functional>
#include <gtest/gtest.h>

namespace veranox {

namespace {

using test::Document;
using test::RawClient;
using test::RunningServer;

constexpr std::size_t mebibyte = 1024 * 1024;

Document document()
{
    return Document("docs/control-api.md");
}

/// A request that is right, for a test to spoil.
struct Request {
    std::string method = "POST";
    std::string target = "/api/shutdown";
    std::string host;
    std::string headers;
    std::string token;
    std::size_t length = 0;

    std::string text() const
    {
        return method + " " + target + " HTTP/1.1\r\nHost: " + host + "\r\n" + headers + token
            + "Content-Length: " + std::to_string(length) + "\r\n\r\n";
    }
};

/// One thing that is wrong with a request: the status that it has, and how it comes about.
struct Defect {
    std::string status;
    std::function<void(Request &)> spoil;
};

/// In the order in which they count.
const Defect defects[] = {
    {"431", [](Request &request) { request.headers += "X-Padding: " + std::string(20000, 'x') + "\r\n"; }},
    {"413", [](Request &request) { request.length = 5 * mebibyte; }},
    {"501", [](Request &request) { request.headers += "Transfer-Encoding: gzip\r\n"; }},
    {"421", [](Request &request) { request.host = "evil.example"; }},
    {"400 (`Origin`)", [](Request &request) { request.headers += "Origin: http://evil.example\r\n"; }},
    {"400 (`Sec-Fetch-Site`)", [](Request &request) { request.headers += "Sec-Fetch-Site: cross-site\r\n"; }},
    {"400 (the path)", [](Request &request) { request.target = "/api/%zz"; }},
    {"404", [](Request &request) { request.target = "/api/none"; }},
    {"405", [](Request &request) { request.method = "PUT"; }},
    {"403", [](Request &request) { request.token = ""; }},
    {"query", [](Request &request) { request.target += "?force=%zz"; }},
};

unsigned statusOf(const std::string &status)
{
    return status == "query" ? 400U : static_cast<unsigned>(std::stoul(status));
}

TEST(ControlApiDocument, TellsTheOrderInWhichThingsAreFound)
{
    std::string told;
    for (const Defect &defect : defects)
        told += defect.status == "query" ? "and " : defect.status + ", ";
    std::string text =
        document().between("is answered, in this order: ", "only then what is wrong with query and body.");
    std::ranges::replace(text, '\n', ' ');
    EXPECT_EQ(text, told);
}

TEST(ControlApiDocument, ThingsAreFoundInThatOrder)
{
    RunningServer server({});
    for (const Defect &first : defects)
        for (const Defect *second = &first; second != std::end(defects); ++second) {
            Request request{.host = "127.0.0.1:" + std::to_string(server.port()), .token = server.tokenLine()};
            if (second->status == "query")
                request.target = "/api/config";
            second->spoil(request);
            first.spoil(request);
            RawClient client(server.port());
            EXPECT_EQ(client.exchange(request.text()).result_int(), statusOf(first.status))
                << first.status << " and " << second->status;
        }
}

TEST(ControlApiDocument, TellsTheLimits)
{
    const Document page = document();
    const ControlLimits limits;
    EXPECT_EQ(page.number("body or header too large (", " MiB") * mebibyte, limits.bodyBytes);
    EXPECT_EQ(page.number(" MiB, ", " KiB)") * 1024, limits.headerBytes);
    EXPECT_EQ(page.number("when it takes more than\n", " MiB with the chunk headers") * mebibyte, limits.framedBytes);
    EXPECT_EQ(page.number("or one of these more than ", " KiB.)") * 1024, limits.pieceBytes);
    EXPECT_EQ(page.number("takes the rest for a while, up to ", " MiB") * mebibyte, limits.drainBytes);
}

TEST(ControlApiDocument, LimitsHoldToTheByte)
{
    RunningServer server({});
    const std::size_t most = document().number("body or header too large (", " MiB") * mebibyte;
    for (const std::size_t more : {0U, 1U}) {
        RawClient client(server.port());
        const std::string length = "Content-Length: " + std::to_string(most + more) + "\r\n";
        client.send(client.request("POST", "/api/shutdown", length) + std::string(most + more, 'x'));
        EXPECT_EQ(client.receive().result_int(), more == 0 ? 403U : 413U);
    }
}

} // namespace

} // namespace veranox
