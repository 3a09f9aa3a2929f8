import QtQuick
import Veranox.Controls
import Veranox.Popover

Item {
    id: line
    required property VeranoxMenuHeader header

    implicitHeight: Theme.rowHeight - Theme.unit

    Rectangle {
        id: tile
        width: parent.height
        height: width
        radius: Theme.cardRadius
        color: Theme.card
        border.width: Theme.hairlineWidth
        border.color: Theme.hairline
        Logo {
            anchors.centerIn: parent
            width: Theme.controlHeight - Theme.unit
            height: width
            foreground: Theme.text
        }
    }
    Column {
        anchors.left: tile.right
        anchors.leftMargin: Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit / 2
        Label {
            text: "Veranox"
            font.pixelSize: Theme.sectionSize
            font.weight: Font.DemiBold
        }
        Row {
            objectName: "status"
            spacing: Theme.unit * 1.5
            Accessible.role: Accessible.StaticText
            Accessible.name: line.header.statusTitle
            Item {
                width: Theme.dotSize
                height: Theme.dotSize
                anchors.verticalCenter: parent.verticalCenter
                StateDot { color: Theme.tone(line.header.statusTone) }
            }
            Label {
                text: line.header.statusTitle
                color: Theme.secondary
                font.pixelSize: Theme.secondarySize
                Accessible.ignored: true
            }
        }
    }
    IconButton {
        objectName: "headerAction"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: line.header.actionTitle
        symbol: line.header.actionSymbol
        enabled: line.header.actionEnabled
        onClicked: line.header.performAction()
    }
}
