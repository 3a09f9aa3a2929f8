#pragma once
#include <boost/asio/ip/network_v4.hpp>
#include <boost/asio/ip/network_v6.hpp>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>

namespace veranox {

/// Numbers under ranges of addresses of one kind; the narrowest range that holds an address is found.
template <class Address> class AddressRanges {
public:
    /// Of equal ranges the first one stays.
    void add(const Address &address, unsigned short prefix, std::size_t number)
    {
        m_byPrefix[prefix].emplace(firstOf(address, prefix), number);
    }

    std::optional<std::size_t> find(const Address &address) const
    {
        for (const auto &[prefix, ranges] : m_byPrefix)
            if (const auto found = ranges.find(firstOf(address, prefix)); found != ranges.end())
                return found->second;
        return std::nullopt;
    }

private:
    /// The address in whose place every address of the range can stand.
    static Address firstOf(const Address &address, unsigned short prefix)
    {
        if constexpr (requires { address.to_uint(); })
            return boost::asio::ip::network_v4(address, prefix).network();
        else
            return boost::asio::ip::network_v6(address, prefix).network();
    }

    std::map<unsigned short, std::map<Address, std::size_t>, std::greater<>> m_byPrefix; // narrow ranges first
};

} // namespace veranox
