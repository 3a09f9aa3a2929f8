// A message body in a QByteArray, for Boost.Beast, so that what was received needs no copy. Only for the transport.
#pragma once
#include "API/Client/VeranoxLoopbackTransport.h"
#include <QByteArray>
#include <boost/asio/buffer.hpp>
#include <boost/beast/core/buffer_traits.hpp>
#include <boost/beast/core/buffers_range.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/optional.hpp>
#include <cstdint>
#include <utility>

struct VeranoxByteArrayBody {
    using value_type = QByteArray;

    static constexpr qsizetype largeBody = 1024 * 1024; // bytes
    static constexpr qsizetype maximumSize = VeranoxLoopbackTransport::maximumBodySize;

    static std::uint64_t size(const QByteArray &body) { return static_cast<std::uint64_t>(body.size()); }

    class reader {
    public:
        template <bool isRequest, class Fields>
        reader(boost::beast::http::header<isRequest, Fields> & /*header*/, QByteArray &body) : m_body(body)
        {
        }
        // The announced length is not trusted with memory: the body grows with what really comes.
        void init(const boost::optional<std::uint64_t> & /*length*/, boost::system::error_code &error) { error = {}; }
        template <class Buffers> std::size_t put(const Buffers &buffers, boost::system::error_code &error)
        {
            error = {};
            const auto count = static_cast<qsizetype>(boost::beast::buffer_bytes(buffers));
            if (m_body.size() + count > largeBody && m_body.capacity() < maximumSize)
                m_body.reserve(maximumSize); // pages that are never written cost nothing, copies while growing do
            for (const auto piece : boost::beast::buffers_range_ref(buffers))
                m_body.append(static_cast<const char *>(piece.data()), static_cast<qsizetype>(piece.size()));
            return static_cast<std::size_t>(count);
        }
        void finish(boost::system::error_code &error) { error = {}; }

    private:
        QByteArray &m_body;
    };

    class writer {
    public:
        using const_buffers_type = boost::asio::const_buffer;
        template <bool isRequest, class Fields>
        writer(const boost::beast::http::header<isRequest, Fields> & /*header*/, const QByteArray &body) : m_body(body)
        {
        }
        void init(boost::system::error_code &error) { error = {}; }
        boost::optional<std::pair<const_buffers_type, bool>> get(boost::system::error_code &error)
        {
            error = {};
            return {{boost::asio::buffer(m_body.constData(), static_cast<std::size_t>(m_body.size())), false}};
        }

    private:
        const QByteArray &m_body;
    };
};
