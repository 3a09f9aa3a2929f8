#include "Platform/macOS/MenuBarAppearance.h"

MenuBarAppearance::MenuBarAppearance(QObject *parent) : Appearance(parent)
{
    connect(&m_palette, &PaletteWatcher::paletteChanged, this, &Appearance::changed);
}
