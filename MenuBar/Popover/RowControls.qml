import QtQuick
import Veranox.Controls

// What can be done to a row, at its end.
Item {
    id: actions
    property string title
    property bool canRetry
    property bool retryEnabled
    property bool isRetrying
    property string retryHelp
    property bool isOn
    property bool canSwitch
    property bool isSwitching
    property string toggleHelp
    signal retried
    signal switched(bool on)

    implicitWidth: toggle.implicitWidth + retry.implicitWidth + Theme.unit

    IconButton {
        id: retry
        objectName: "retry." + actions.title
        anchors.verticalCenter: parent.verticalCenter
        visible: actions.canRetry
        text: actions.retryHelp
        Accessible.description: actions.title
        symbol: actions.isRetrying ? "" : "arrow.clockwise"
        enabled: actions.retryEnabled
        onClicked: actions.retried()
        Spinner {
            anchors.centerIn: parent
            visible: actions.isRetrying
        }
    }
    ToggleSwitch {
        id: toggle
        objectName: "toggle." + actions.title
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: actions.title
        help: actions.toggleHelp
        on: actions.isOn
        busy: actions.isSwitching
        enabled: actions.canSwitch
        onSwitched: on => actions.switched(on)
    }
}
