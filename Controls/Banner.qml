import QtQuick
import Veranox.Controls

// Something that needs a person: a symbol, a title, a sentence, and at the end whatever is put in.
Rectangle {
    id: banner
    property string symbol: "exclamationmark.triangle.fill"
    property string title
    property string text
    property bool severe: true
    default property alias actions: slot.data

    implicitHeight: Math.max(words.implicitHeight, slot.implicitHeight) + Theme.unit * 6
    radius: Theme.cardRadius
    color: severe ? Theme.errorSurface : Theme.warningSurface
    border.width: Theme.hairlineWidth
    border.color: severe ? Theme.errorBorder : Theme.warningBorder
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title
    Accessible.description: text

    Symbol {
        id: sign
        x: Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        name: banner.symbol
        size: Theme.titleSize
        color: banner.severe ? Theme.errorText : Theme.warningText
    }
    Column {
        id: words
        anchors.left: sign.right
        anchors.leftMargin: Theme.unit * 3
        anchors.right: slot.left
        anchors.rightMargin: Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit / 2
        Label {
            width: parent.width
            text: banner.title
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            text: banner.text
            font.pixelSize: Theme.secondarySize
            wrapMode: Text.Wrap
        }
    }
    Row {
        id: slot
        anchors.right: parent.right
        anchors.rightMargin: Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit * 2
    }
}
