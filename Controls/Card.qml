import QtQuick
import Veranox.Controls

// A surface that rows stand on.
Rectangle {
    color: Theme.card
    radius: Theme.cardRadius
    border.width: Theme.hairlineWidth
    border.color: Theme.hairline
}
