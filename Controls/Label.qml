import QtQuick
import Veranox.Controls

// Text of the body.
Text {
    color: Theme.text
    font.family: Theme.family
    font.pixelSize: Theme.bodySize
    verticalAlignment: Text.AlignVCenter
    textFormat: Text.PlainText
    elide: Text.ElideRight
}
