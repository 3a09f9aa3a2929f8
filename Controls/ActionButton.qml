import QtQuick
import QtQuick.Templates as T
import Veranox.Controls

// A button with words, and a symbol before them if it has one.
T.Button {
    id: button
    enum Look { Plain, Prominent, Destructive, Quiet }

    property string symbol
    property string help // what the words leave out: tool tip, and description for a screen reader
    property int look: ActionButton.Look.Plain
    readonly property bool filled: look === ActionButton.Look.Prominent || look === ActionButton.Look.Destructive
    readonly property color foreground: filled ? Theme.fillText : Theme.text

    implicitHeight: Theme.controlHeight
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    leftPadding: Theme.unit * 3
    rightPadding: Theme.unit * 3
    font.family: Theme.family
    font.pixelSize: Theme.bodySize
    font.weight: filled ? Font.Medium : Font.Normal
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: button.clicked()
    Keys.onEnterPressed: button.clicked()
    Accessible.name: text
    Accessible.description: help
    Accessible.onPressAction: if (button.enabled) button.clicked()

    contentItem: Row {
        spacing: Theme.unit * 1.5
        Symbol {
            visible: button.symbol.length > 0
            name: button.symbol
            size: Theme.sectionSize
            color: button.foreground
            anchors.verticalCenter: parent.verticalCenter
        }
        Text {
            text: button.text
            textFormat: Text.PlainText
            font: button.font
            color: button.foreground
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: {
            if (button.look === ActionButton.Look.Prominent)
                return button.down || button.hovered ? Theme.accentFillHovered : Theme.accentFill
            if (button.look === ActionButton.Look.Destructive)
                return button.down || button.hovered ? Theme.dangerFillHovered : Theme.dangerFill
            if (button.look === ActionButton.Look.Quiet)
                return button.down ? Theme.pressed : button.hovered ? Theme.hover : "transparent"
            return button.down ? Theme.controlPressed : button.hovered ? Theme.controlHovered : Theme.control
        }
        border.width: button.look === ActionButton.Look.Plain ? Theme.hairlineWidth : 0
        border.color: Theme.controlBorder
        FocusRing { visible: button.visualFocus }
    }
    Tip {
        text: button.help
        wanted: button.hovered || button.visualFocus
    }
}
