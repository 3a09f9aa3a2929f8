#include "Platform/PaletteWatcher.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

PaletteWatcher::PaletteWatcher() : QWidget(nullptr) { }

bool PaletteWatcher::isDark()
{
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightnessF() > palette.color(QPalette::Window).lightnessF();
}

bool PaletteWatcher::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange)
        Q_EMIT paletteChanged();
    return handled;
}
