import QtQuick
import QtQuick.Templates as T
import Veranox.Controls

// On or off. It asks to be switched and shows what is true: `checked` is bound, and follows the answer.
T.CheckBox {
    id: toggle
    property bool on: false
    property string help
    property bool busy: false
    signal switched(bool on)

    implicitWidth: Theme.controlHeight + Theme.unit * 2
    implicitHeight: Theme.controlHeight - Theme.unit * 2
    opacity: enabled ? 1 : Theme.disabledOpacity
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    checked: on
    nextCheckState: () => toggle.checkState // who is asked decides
    onClicked: toggle.switched(!toggle.on)
    Keys.onReturnPressed: toggle.clicked()
    Keys.onEnterPressed: toggle.clicked()
    Accessible.name: text
    Accessible.description: help
    Accessible.onPressAction: if (toggle.enabled) toggle.clicked()
    Accessible.onToggleAction: if (toggle.enabled) toggle.clicked()

    background: Rectangle {
        radius: height / 2
        color: toggle.on ? Theme.switchOn : Theme.switchOff
        opacity: toggle.busy ? Theme.halfOpacity : 1
        FocusRing {
            radius: height / 2
            visible: toggle.visualFocus
        }
        Behavior on color { ColorAnimation { duration: Theme.quick } }
    }
    indicator: Rectangle {
        readonly property int inset: Theme.hairlineWidth * 2
        x: toggle.on ? toggle.width - width - inset : inset
        y: inset
        width: height
        height: toggle.height - inset * 2
        radius: height / 2
        color: Theme.fillText
        Behavior on x { NumberAnimation { duration: Theme.quick; easing.type: Easing.OutCubic } }
    }
    Tip {
        text: toggle.help
        wanted: toggle.hovered || toggle.visualFocus
    }
}
