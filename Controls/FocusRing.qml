import QtQuick
import Veranox.Controls

// Where the keyboard is. Fills the control that it is a child of.
Rectangle {
    anchors.fill: parent
    anchors.margins: -Theme.focusWidth - 1
    radius: Theme.controlRadius + Theme.focusWidth
    color: "transparent"
    border.width: Theme.focusWidth
    border.color: Theme.accent
}
