#pragma once
#include <boost/asio/buffer.hpp>
#include <boost/beast/core/buffers_range.hpp>
#include <boost/beast/core/error.hpp>
#include <boost/beast/http/fields.hpp>
#include <boost/optional.hpp>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veranox {

/// The body of a request, in the way that Beast's parsers take one: kept as a text, or read for nothing.
struct RequestBody {
    struct value_type {
        std::string text;
        bool isKept = true;
    };

    class reader {
    public:
        template <bool isRequest, class Fields>
        reader(boost::beast::http::header<isRequest, Fields> &, value_type &body) : m_body(body)
        {
        }
        void init(const boost::optional<std::uint64_t> &, boost::beast::error_code &failure) { failure = {}; }
        template <class Buffers> std::size_t put(const Buffers &buffers, boost::beast::error_code &failure)
        {
            failure = {};
            if (m_body.isKept)
                for (const boost::asio::const_buffer piece : boost::beast::buffers_range_ref(buffers))
                    m_body.text.append(static_cast<const char *>(piece.data()), piece.size());
            return boost::asio::buffer_size(buffers);
        }
        void finish(boost::beast::error_code &failure) { failure = {}; }

    private:
        value_type &m_body;
    };
};

/// The values of every header of that name, in their order.
std::vector<std::string> allFields(const boost::beast::http::fields &fields, std::string_view name);

/// Whether the body is wrapped in anything but "chunked" alone: then nobody here knows where it ends.
bool hasUnknownCoding(const boost::beast::http::fields &fields);

/// Whether one of the Connection headers, however many there are, asks for the end of the connection.
bool asksToClose(const boost::beast::http::fields &fields);

} // namespace veranox
