import QtQuick
import QtQuick.Templates as T
import Veranox.Controls

// A button that is a symbol. Its words are its tool tip, and its name for a screen reader.
T.Button {
    id: button
    property string symbol
    property string help: text
    property color foreground: Theme.secondary

    implicitWidth: Theme.controlHeight
    implicitHeight: Theme.controlHeight
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Accessible.name: text
    Accessible.description: help === text ? "" : help
    Accessible.onPressAction: if (button.enabled) button.clicked()

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.symbol
            color: button.hovered || button.visualFocus ? Theme.text : button.foreground
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: button.down ? Theme.pressed : button.hovered ? Theme.hover : "transparent"
        FocusRing { visible: button.visualFocus }
    }
    Tip {
        text: button.help
        wanted: button.hovered || button.visualFocus
    }
}
