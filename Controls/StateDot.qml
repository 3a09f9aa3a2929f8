import QtQuick
import Veranox.Controls

// A dot of colour. What it means stands beside it in words.
Rectangle {
    implicitWidth: Theme.dotSize
    implicitHeight: Theme.dotSize
    radius: width / 2
    color: Theme.gray
}
