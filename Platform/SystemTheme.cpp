#include "Platform/SystemTheme.h"

QColor SystemTheme::panelForeground() const
{
    // The text colours of the two schemes.
    return isPanelDark() ? QColor(0xF5, 0xF5, 0xF7) : QColor(0x1D, 0x1D, 0x1F);
}
