#pragma once
#include <stdexcept>

namespace veranox {

/// Why the service cannot do what it was started or asked for, as one finished sentence for a person: it names the file
/// or the argument, the place in it and the remedy. While the service starts it ends the program with status 2.
class ServiceProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace veranox
