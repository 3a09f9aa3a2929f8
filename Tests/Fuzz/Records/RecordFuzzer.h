#pragma once
#include "Base/Json/DecodingError.h"
#include "Base/Json/Json.h"
#include <cstdint>
#include <cstdlib>
#include <optional>

namespace fuzz {

// Ends the process, which the fuzzer reports as a finding.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

// The value that the bytes hold, or nothing if they were refused in the only way that is allowed.
template <class Value> std::optional<Value> decoded(const std::uint8_t *data, std::size_t size)
{
    try {
        return decodeRecord<Value>(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    } catch (const DecodingError &error) {
        require(!error.expected().isEmpty() && !error.found().isEmpty());
        return std::nullopt;
    }
}

// The same bytes are read the same way twice.
template <class Value> void decode(const std::uint8_t *data, std::size_t size)
{
    require(decoded<Value>(data, size) == decoded<Value>(data, size));
}

} // namespace fuzz
