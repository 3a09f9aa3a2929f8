#include "Platform/WindowPlacing.h"

bool platform::canPlaceWindows()
{
    return true;
}

bool platform::blendsWindows()
{
    return true;
}
