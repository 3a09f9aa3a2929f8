#pragma once
#include "Core/MenuBarIcon.h"
#include <QColor>
#include <QPainterPath>

// Something for each of the seven parts of the mark: a line that comes in at a node, two branches that leave it, the
// segment at the end of either branch, and a badge.
template <class T> struct VeranoxMenuBarMark {
    T input;
    T branchUp;
    T branchDown;
    T node;
    T live; // the end of the lower branch
    T muted; // the end of the upper branch
    T badge;

    bool operator==(const VeranoxMenuBarMark &) const = default;
};

// Points of the mark itself, and of the square that panels give an icon; the mark stands in the middle of it.
constexpr int veranoxMenuBarMarkWidth = 21;
constexpr int veranoxMenuBarMarkHeight = 18;
constexpr int veranoxMenuBarIconSize = 22;

// The colour of each part; an invalid colour stands for a part that is not drawn. `foreground` is the colour of text on
// the panel, `ink` the one that template images are drawn in, `pulse` the strength of the beat, from 0 to 1.
VeranoxMenuBarMark<QColor> veranoxMenuBarColors(
    MenuBarIcon icon, double pulse, const QColor &foreground, const QColor &ink);

// Whether the icon is a template image: one colour in different strengths, which the panel may replace.
bool isVeranoxMenuBarTemplate(MenuBarIcon icon);

// The outline of each part in a square of so many pixels, with straight edges on whole pixels and no two parts
// overlapping. The outlines differ between icons, so that they are told apart without colour.
VeranoxMenuBarMark<QPainterPath> veranoxMenuBarShapes(MenuBarIcon icon, int pixels);
