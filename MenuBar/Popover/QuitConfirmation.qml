import QtQuick
import Veranox.Controls
import Veranox.Popover

// Asked before everything stops. The panel can be moved by its background.
FocusScope {
    id: panel
    required property VeranoxQuitConfirmation confirmation
    property bool blended: false

    signal moveRequested

    objectName: "quitConfirmation"
    implicitWidth: 420
    implicitHeight: column.implicitHeight + Theme.pageMargin * 2
    focus: true
    Keys.onEscapePressed: panel.confirmation.cancel()
    Accessible.role: Accessible.Dialog
    Accessible.name: "Quit Veranox?"
    Accessible.description: panel.confirmation.text

    Rectangle {
        anchors.fill: parent
        radius: panel.blended ? Theme.popoverRadius : 0
        color: Theme.window
        border.width: Theme.hairlineWidth
        border.color: Theme.controlBorder
    }
    DragHandler {
        target: null
        onActiveChanged: if (active) panel.moveRequested()
    }
    Column {
        id: column
        x: Theme.pageMargin
        y: Theme.pageMargin
        width: parent.width - Theme.pageMargin * 2
        spacing: Theme.unit * 4

        Row {
            width: parent.width
            spacing: Theme.unit * 4
            Rectangle {
                id: tile
                width: Theme.rowHeight
                height: width
                radius: width / 2
                color: Theme.errorSurface
                Symbol {
                    anchors.centerIn: parent
                    name: "power.circle.fill"
                    size: Theme.titleSize + Theme.unit
                    color: Theme.errorText
                }
            }
            Column {
                width: parent.width - tile.width - parent.spacing
                spacing: Theme.unit * 1.5
                Label {
                    text: "Quit Veranox?"
                    font.pixelSize: Theme.sectionSize
                    font.weight: Font.DemiBold
                }
                Label {
                    width: parent.width
                    text: panel.confirmation.text
                    color: Theme.secondary
                    wrapMode: Text.Wrap
                    lineHeight: 1.15
                }
            }
        }
        Banner {
            width: parent.width
            severe: false
            title: "Connected clients will drop"
            text: panel.confirmation.notice
        }
        Row {
            visible: panel.confirmation.isQuitting
            spacing: Theme.unit * 2
            Spinner { }
            Label {
                objectName: "progress"
                text: "Stopping Veranox..."
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                color: Theme.secondary
            }
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.unit * 2
            ActionButton {
                objectName: "cancel"
                text: "Cancel"
                onClicked: panel.confirmation.cancel()
            }
            ActionButton {
                objectName: "confirm"
                focus: true
                text: panel.confirmation.confirmTitle
                look: ActionButton.Look.Destructive
                enabled: !panel.confirmation.isQuitting
                onClicked: panel.confirmation.confirm()
            }
        }
    }
}
