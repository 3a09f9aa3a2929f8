#pragma once
#include <cstddef>

namespace veranox::test {

/// Makes one allocation of one thread fail, in a program that links FailingAllocation.cpp.
class FailingAllocation {
public:
    /// The thread that calls this is the one that is meant from now on.
    static void chooseThisThread();
    /// Its allocation of that number from now on fails, counted from 0.
    static void failAt(std::size_t number);
    /// None fails. Tells whether one did since failAt().
    static bool disarm();
};

} // namespace veranox::test
