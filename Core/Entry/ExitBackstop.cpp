#include "Core/Entry/ExitBackstop.h"
#include <cstdlib>
#include <thread>

void endProcessAfter(std::chrono::milliseconds time)
{
    std::thread([time] {
        std::this_thread::sleep_for(time);
        std::_Exit(EXIT_SUCCESS);
    }).detach();
}
