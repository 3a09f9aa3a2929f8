import QtQuick
import Veranox.Controls
import Veranox.Popover

Item {
    id: line
    required property VeranoxMenuFooter footer

    implicitHeight: Theme.controlHeight

    Row {
        spacing: Theme.unit * 2
        ActionButton {
            objectName: "copyPAC"
            text: "Copy PAC"
            symbol: line.footer.justCopied ? "checkmark" : "doc.on.doc"
            help: line.footer.justCopied ? "Copied" : "Copy the address of the automatic proxy configuration"
            enabled: line.footer.serviceIsOnline
            onClicked: line.footer.copyPAC()
        }
        ActionButton {
            objectName: "webGUI"
            text: "Web GUI"
            symbol: "globe"
            help: "Open Veranox in the browser"
            enabled: line.footer.serviceIsOnline
            onClicked: line.footer.openWebGUI()
        }
    }
    ActionButton {
        objectName: "quit"
        anchors.right: parent.right
        text: "Quit"
        symbol: "power"
        look: ActionButton.Look.Quiet
        onClicked: line.footer.requestQuit()
    }
}
