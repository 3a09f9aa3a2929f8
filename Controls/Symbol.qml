import QtQuick
import Veranox.Controls

// A symbol of the embedded font. It says nothing to a screen reader: what it stands for is said by the item it is part of.
Text {
    property string name
    property int size: Theme.iconSize

    text: Symbols.glyph(name)
    font.family: Symbols.family
    font.pixelSize: size
    color: Theme.text
    width: size
    height: size
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    textFormat: Text.PlainText
    Accessible.ignored: true
}
