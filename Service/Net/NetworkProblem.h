#pragma once
#include <stdexcept>

namespace veranox {

/// Why a connection was not made or a port not opened, as one sentence for a person.
class NetworkProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace veranox
