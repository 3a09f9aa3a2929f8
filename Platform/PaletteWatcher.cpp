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

void PaletteWatcher::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange)
        Q_EMIT paletteChanged();
}
