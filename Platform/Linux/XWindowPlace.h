#pragma once
#include <QRect>
#include <QWidget>

// Where a window of this application really stands on the X display, in global coordinates: asked from the server in
// one round trip. For windows that another program has taken in and moves: Qt then only knows where they once were.
// Empty where there is no X, and while the window is not shown.
QRect placeOnDisplay(const QWidget &window);
