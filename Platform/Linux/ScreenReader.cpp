#include "Platform/ScreenReader.h"
#include <QByteArray>

void platform::offerToScreenReaders()
{
    // Without it Qt asks once, when the accessibility bus comes up, whether a screen reader runs, and never again. This
    // application starts with the session, and so before the screen reader of most people.
    constexpr const char *alwaysOn = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON";
    if (!qEnvironmentVariableIsSet(alwaysOn))
        qputenv(alwaysOn, "1");
}
