#include "Service/Net/TlsClient.h"

#include <boost/asio/as_tuple.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/ip/address.hpp>
#include <boost/asio/ssl/error.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/error.hpp>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/sslerr.h>
#include <openssl/x509_vfy.h>

namespace veranox {

namespace asio = boost::asio;
namespace ssl = boost::asio::ssl;

namespace {

constexpr auto asTuple = asio::as_tuple(asio::use_awaitable);

bool isAddress(const std::string &host)
{
    boost::system::error_code failure;
    asio::ip::make_address(host, failure);
    return !failure;
}

/// Whom the connection is for: the host serves the certificate of that name, and it has to be of that name. An address
/// is no name to ask for, only one to check.
bool expectHost(SSL *connection, const std::string &host)
{
    if (isAddress(host))
        return X509_VERIFY_PARAM_set1_ip_asc(SSL_get0_param(connection), host.c_str()) == 1;
    return SSL_set_tlsext_host_name(connection, host.c_str()) == 1 && SSL_set1_host(connection, host.c_str()) == 1;
}

asio::awaitable<std::unique_ptr<ssl::context>> readContext()
{
    auto context = std::make_unique<ssl::context>(ssl::context::tls_client);
    context->set_options(ssl::context::no_tlsv1 | ssl::context::no_tlsv1_1);
    context->set_default_verify_paths();
    // The certificate is checked all the same; the handshake only goes on whatever comes of it.
    context->set_verify_mode(ssl::verify_none);
    co_return context;
}

std::string sentence(const boost::system::error_code &failure)
{
    if (failure == boost::beast::error::timeout)
        return "The host took the connection but did not finish the TLS handshake in time.";
    if (failure == asio::error::eof || failure == asio::error::connection_reset
        || failure == ssl::error::stream_truncated)
        return "The host took the connection and closed it during the TLS handshake.";
    const bool isOfTls = failure.category() == asio::error::get_ssl_category();
    if (isOfTls && ERR_GET_REASON(static_cast<unsigned long>(failure.value())) == SSL_R_WRONG_VERSION_NUMBER)
        return "The host took the connection but does not speak TLS.";
    return "The TLS handshake failed: " + failure.message() + ".";
}

} // namespace

asio::awaitable<std::unique_ptr<ssl::context>> clientContext()
{
    asio::thread_pool reader(1);
    co_return co_await asio::co_spawn(reader, readContext(), asio::use_awaitable);
}

asio::awaitable<TlsGreeting> greet(TlsStream *stream, std::string host)
{
    SSL *connection = stream->native_handle();
    if (!expectHost(connection, host))
        co_return TlsGreeting{"No TLS connection can be asked for under this name.", ""};
    const auto [failure] = co_await stream->async_handshake(ssl::stream_base::client, asTuple);
    if (failure)
        co_return TlsGreeting{sentence(failure), ""};
    const long verdict = SSL_get_verify_result(connection);
    co_return TlsGreeting{"", verdict == X509_V_OK ? "" : X509_verify_cert_error_string(verdict)};
}

} // namespace veranox
