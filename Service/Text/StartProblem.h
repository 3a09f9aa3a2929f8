#pragma once
#include <stdexcept>

namespace veranox {

/// Why the service cannot start, as one finished sentence for the person who started it: it names the file or the
/// argument, the place in it and the remedy. Ends the program with status 2.
class StartProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace veranox
