#include "Platform/ScreenReader.h"

void platform::offerToScreenReaders()
{
    // Cocoa asks the application when somebody wants to know.
}
