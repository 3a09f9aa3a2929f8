import QtQuick
import Veranox.Controls

// Why something that a person did in the rows above did not work.
Rectangle {
    id: line
    property string text
    readonly property int gap: Theme.unit * 3

    visible: text.length > 0
    implicitHeight: sentence.implicitHeight + Theme.unit * 4
    radius: Theme.cardRadius
    color: Theme.errorSurface
    border.width: Theme.hairlineWidth
    border.color: Theme.errorBorder
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Symbol {
        x: line.gap + (Theme.controlHeight - width) / 2 // under the marks of the rows
        anchors.verticalCenter: parent.verticalCenter
        name: "exclamationmark.triangle.fill"
        color: Theme.errorText
    }
    Label {
        id: sentence
        x: line.gap * 2 + Theme.controlHeight
        width: parent.width - x - line.gap
        anchors.verticalCenter: parent.verticalCenter
        text: line.text
        color: Theme.errorText
        font.pixelSize: Theme.secondarySize
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
