#include "Tests/Service/Support/TlsServer.h"

#include "Service/Net/LabCertificate.h"
#include <boost/asio/read_until.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>
#include <memory>
#include <openssl/pem.h>
#include <sys/socket.h>

namespace veranox::test {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

std::string certificateOf(asio::ssl::context &context)
{
    const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), &BIO_free);
    PEM_write_bio_X509(memory.get(), SSL_CTX_get0_certificate(context.native_handle()));
    std::string text(BIO_ctrl_pending(memory.get()), '\0');
    BIO_read(memory.get(), text.data(), static_cast<int>(text.size()));
    return text;
}

} // namespace

TlsServer::TlsServer(const std::string &host, std::string answer, End end)
    : m_tls(selfSignedContext(host)),
      m_certificate(certificateOf(m_tls)),
      m_answer(std::move(answer)),
      m_end(end),
      m_acceptor(m_context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)),
      m_port(m_acceptor.local_endpoint().port()),
      m_thread([this] { serve(); })
{
}

TlsServer::~TlsServer()
{
    end();
}

void TlsServer::end()
{
    ::shutdown(m_acceptor.native_handle(), SHUT_RDWR); // wakes the thread that waits there
    if (m_thread.joinable())
        m_thread.join();
}

void TlsServer::serve()
{
    boost::system::error_code failure;
    while (!failure) {
        tcp::socket socket = m_acceptor.accept(failure);
        if (!failure)
            serveOne(std::move(socket));
    }
}

void TlsServer::serveOne(tcp::socket socket)
{
    boost::system::error_code failure;
    asio::ssl::stream<tcp::socket> stream(std::move(socket), m_tls);
    if (stream.handshake(asio::ssl::stream_base::server, failure))
        return; // somebody who only looked whether anybody is there
    const char *name = SSL_get_servername(stream.native_handle(), TLSEXT_NAMETYPE_host_name);
    m_askedName = name ? name : "";
    m_request.clear();
    asio::read_until(stream, asio::dynamic_buffer(m_request), "\r\n\r\n", failure);
    asio::write(stream, asio::buffer(m_answer), failure);
    if (m_end == End::farewell)
        stream.shutdown(failure);
}

} // namespace veranox::test
