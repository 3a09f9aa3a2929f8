#pragma once
#include <cstddef>

namespace veranox {

/// What came of moving bytes without waiting.
enum class Flow {
    moved,
    awaitsRead, // go on once the end at hand can be read
    awaitsWrite, // go on once it can be written
    ended, // in order
    failed,
};

/// The same with the number of bytes that moved.
struct Transfer {
    Flow flow = Flow::failed;
    std::size_t count = 0;
};

} // namespace veranox
