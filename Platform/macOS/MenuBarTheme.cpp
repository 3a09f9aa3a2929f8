#include "Platform/macOS/MenuBarTheme.h"

MenuBarTheme::MenuBarTheme(QObject *parent) : SystemTheme(parent)
{
    connect(&m_palette, &PaletteWatcher::paletteChanged, this, &SystemTheme::changed);
}
