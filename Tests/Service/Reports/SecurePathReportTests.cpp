#include "Tests/Service/Support/LabBench.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include "Tests/Service/Support/TlsServer.h"
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/use_future.hpp>
#include <boost/json/value_to.hpp>
#include <cstdlib>
#include <functional>
#include <gmock/gmock.h>
#include <poll.h>
#include <vector>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::TlsServer;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string shortAnswer = "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: 5\r\n\r\nhello";

std::string text(const boost::json::value &value)
{
    return boost::json::value_to<std::string>(value);
}

/// What a report tells of "https://wiki.tail1.ts.net/page" (or another host) when that is the port of this computer.
boost::json::object reportOf(std::uint16_t port, const std::string &host = "wiki.tail1.ts.net")
{
    const std::string address = "\"127.0.0.1:" + std::to_string(port) + "\"";
    test::LabBench bench(R"({"version": 1,
        "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"wiki": )"
        + address + R"(, "alias": )" + address + R"(, "10.1.2.3": )" + address + R"(}}},
        "profiles": {"p": {"tailnet": "net",
            "config": {"DisplayName": "Work", "Suffixes": [".tail1.ts.net"], "IPRoutes": ["10.1.0.0/16"]}}}})");
    bench.pass(1s);
    return boost::asio::co_spawn(bench.context(),
        bench.traffic().pathReport({.target = "https://" + host + "/page", .netcheck = false, .pingCount = 1}),
        boost::asio::use_future)
        .get();
}

/// Lets this program trust nothing but one certificate for as long as it lives.
class TrustedCertificate {
public:
    explicit TrustedCertificate(const std::string &certificate)
    {
        m_folder.write("trusted.pem", certificate);
        ::setenv("SSL_CERT_FILE", (m_folder / "trusted.pem").c_str(), 1);
        ::setenv("SSL_CERT_DIR", m_folder.path().c_str(), 1);
    }
    TrustedCertificate(const TrustedCertificate &) = delete;
    TrustedCertificate &operator=(const TrustedCertificate &) = delete;
    ~TrustedCertificate()
    {
        ::unsetenv("SSL_CERT_FILE");
        ::unsetenv("SSL_CERT_DIR");
    }

private:
    test::TemporaryFolder m_folder;
};

TEST(SecurePathReport, HostWithATrustedCertificate)
{
    TlsServer server("wiki.tail1.ts.net", shortAnswer);
    const TrustedCertificate trusted(server.certificate());
    const boost::json::object found = reportOf(server.port());
    EXPECT_EQ(found.at("http").at("ok"), true) << text(found.at("http").at("error"));
    EXPECT_EQ(found.at("http").at("status"), "200 OK");
    EXPECT_EQ(found.at("http").at("url"), "https://wiki.tail1.ts.net:443/page");
    EXPECT_EQ(found.at("http").at("content_type"), "text/plain");
    EXPECT_EQ(found.at("http").at("bytes_read"), 5);
    EXPECT_EQ(found.at("http").at("error"), "");
    EXPECT_EQ(text(found.at("summary")),
        "wiki.tail1.ts.net takes connections on port 443 through profile \"Work\" and answers HTTP with 200 OK.");
    EXPECT_TRUE(found.at("recommendations").as_array().empty());
}

TEST(SecurePathReport, AsksForTheHostByName)
{
    TlsServer server("wiki.tail1.ts.net", shortAnswer);
    reportOf(server.port());
    server.end();
    EXPECT_EQ(server.askedName(), "wiki.tail1.ts.net");
    EXPECT_THAT(
        server.request(), AllOf(StartsWith("GET /page HTTP/1.1\r\n"), HasSubstr("Host: wiki.tail1.ts.net\r\n")));
}

TEST(SecurePathReport, CertificateThatSignsItselfIsToldAndThePageReadAllTheSame)
{
    const TlsServer server("wiki.tail1.ts.net", shortAnswer);
    const boost::json::object found = reportOf(server.port());
    EXPECT_EQ(found.at("http").at("ok"), true);
    EXPECT_EQ(found.at("http").at("status_code"), 200);
    EXPECT_THAT(text(found.at("summary")),
        AllOf(HasSubstr("answers HTTP with 200 OK, but this computer does not trust its certificate: self-signed"),
            ::testing::EndsWith(".")));
    EXPECT_THAT(text(found.at("recommendations").at(0)), HasSubstr("warn of wiki.tail1.ts.net"));
}

TEST(SecurePathReport, TrustedCertificateOfAnotherName)
{
    const TlsServer server("wiki.tail1.ts.net", shortAnswer);
    const TrustedCertificate trusted(server.certificate());
    EXPECT_THAT(text(reportOf(server.port(), "alias.tail1.ts.net").at("summary")),
        HasSubstr("certificate: hostname mismatch."));
}

TEST(SecurePathReport, AddressIsCheckedButNotAskedForByName)
{
    TlsServer server("wiki.tail1.ts.net", shortAnswer);
    const TrustedCertificate trusted(server.certificate());
    const boost::json::object found = reportOf(server.port(), "10.1.2.3");
    EXPECT_EQ(found.at("http").at("ok"), true);
    EXPECT_THAT(text(found.at("summary")), HasSubstr("certificate: IP address mismatch."));
    server.end();
    EXPECT_EQ(server.askedName(), "");
}

TEST(SecurePathReport, AnswerThatGoesOnUntilTheEnd)
{
    const std::string endless = "HTTP/1.1 200 OK\r\n\r\n" + std::string(100000, 'x');
    for (const TlsServer::End end : {TlsServer::End::farewell, TlsServer::End::abrupt}) {
        const TlsServer server("wiki.tail1.ts.net", endless, end);
        const boost::json::object found = reportOf(server.port());
        EXPECT_EQ(found.at("http").at("ok"), true) << text(found.at("http").at("error"));
        EXPECT_EQ(found.at("http").at("bytes_read"), 100000);
    }
}

TEST(SecurePathReport, AnswerThatBreaksOff)
{
    const TlsServer server(
        "wiki.tail1.ts.net", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhello", TlsServer::End::abrupt);
    const boost::json::object found = reportOf(server.port());
    EXPECT_EQ(found.at("http").at("ok"), false);
    EXPECT_EQ(found.at("http").at("status_code"), 200);
    EXPECT_NE(found.at("http").at("error"), "");
}

TEST(SecurePathReport, HostThatSpeaksSomethingElse)
{
    const TlsServer server("wiki.tail1.ts.net", "SSH-2.0-OpenSSH_9.2\r\n");
    EXPECT_EQ(
        text(reportOf(server.port()).at("http").at("error")), "The host took the connection but does not speak HTTP.");
}

TEST(SecurePathReport, BuiltInSiteSpeaksTlsAtItsPort)
{
    test::LabBench bench(R"({"version": 1,
        "tailnets": {"net": {"suffix": ".tail1.ts.net", "hosts": {"wiki": "site"}}},
        "profiles": {"p": {"tailnet": "net", "config": {"Suffixes": [".tail1.ts.net"]}}}})");
    bench.pass(1s);
    const auto report = [&](const std::string &target) {
        return boost::asio::co_spawn(bench.context(),
            bench.traffic().pathReport({.target = target, .netcheck = false, .pingCount = 1}), boost::asio::use_future)
            .get();
    };
    const boost::json::object secure = report("https://wiki.tail1.ts.net");
    EXPECT_EQ(secure.at("http").at("status_code"), 200) << text(secure.at("http").at("error"));
    EXPECT_THAT(text(secure.at("summary")), HasSubstr("does not trust its certificate: self-signed"));
    EXPECT_EQ(report("http://wiki.tail1.ts.net").at("http").at("status_code"), 200) << "and plain HTTP elsewhere";
    EXPECT_EQ(text(report("https://wiki.tail1.ts.net:80").at("http").at("error")),
        "The host took the connection and closed it during the TLS handshake.");
}

/// A host that takes connections in plain and does with each what the test says.
class PlainHost {
public:
    explicit PlainHost(std::function<void(const test::Peer &)> treat)
        : m_treat(std::move(treat)),
          m_thread([this] { serve(); })
    {
    }
    PlainHost(const PlainHost &) = delete;
    PlainHost &operator=(const PlainHost &) = delete;
    ~PlainHost()
    {
        ::shutdown(m_listener.descriptor(), SHUT_RDWR);
        m_thread.join();
    }
    std::uint16_t port() const { return m_listener.port(); }

private:
    void serve()
    {
        std::vector<test::Peer> open;
        for (;;) {
            const int descriptor = m_listener.descriptor();
            pollfd waiting{.fd = descriptor, .events = POLLIN, .revents = 0};
            if (::poll(&waiting, 1, -1) != 1 || (waiting.revents & POLLHUP) != 0)
                return;
            open.push_back(m_listener.accept());
            m_treat(open.back());
        }
    }

    test::Peer m_listener = test::Peer::listening();
    std::function<void(const test::Peer &)> m_treat;
    std::thread m_thread;
};

TEST(SecurePathReport, HostThatNeverAnswersTheHandshakeIsGivenUp)
{
    const PlainHost host([](const test::Peer &) { });
    const auto begin = std::chrono::steady_clock::now();
    const boost::json::object found = reportOf(host.port());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 10s);
    EXPECT_EQ(found.at("ping").at("ok"), true);
    EXPECT_EQ(found.at("http").at("ok"), false);
    EXPECT_EQ(text(found.at("http").at("error")),
        "The host took the connection but did not finish the TLS handshake in time.");
    EXPECT_THAT(text(found.at("summary")),
        HasSubstr("takes connections on port 443 through profile \"Work\", but gave no page:"));
    EXPECT_FALSE(found.at("recommendations").as_array().empty());
}

TEST(SecurePathReport, HostThatAnswersGarbage)
{
    for (const std::string &garbage : {std::string("HTTP/1.1 400 Bad Request\r\n\r\n"), std::string(4096, '\xff'),
             std::string("SSH-2.0-OpenSSH_9.2\r\n"), std::string(4096, '\0')}) {
        const PlainHost host([&](const test::Peer &peer) { peer.send(garbage); });
        const boost::json::object found = reportOf(host.port());
        EXPECT_EQ(found.at("http").at("ok"), false);
        EXPECT_EQ(text(found.at("http").at("error")), "The host took the connection but does not speak TLS.")
            << garbage.substr(0, 20);
    }
}

TEST(SecurePathReport, HostThatHangsUp)
{
    const PlainHost host([](const test::Peer &peer) { peer.finishSending(); });
    EXPECT_EQ(text(reportOf(host.port()).at("http").at("error")),
        "The host took the connection and closed it during the TLS handshake.");
}

TEST(SecurePathReport, HostThatRefusesTheHandshake)
{
    const std::string fatalHandshakeFailure("\x15\x03\x03\x00\x02\x02\x28", 7);
    const PlainHost host([&](const test::Peer &peer) { peer.send(fatalHandshakeFailure); });
    EXPECT_THAT(text(reportOf(host.port()).at("http").at("error")),
        AllOf(StartsWith("The TLS handshake failed: "), HasSubstr("handshake failure")));
}

} // namespace

} // namespace veranox
