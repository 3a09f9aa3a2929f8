import QtQuick
import QtQuick.Templates as T
import Veranox.Controls

T.ScrollBar {
    id: bar
    implicitWidth: Theme.unit * 2
    padding: Theme.hairlineWidth
    rightPadding: Theme.hairlineWidth * 2
    visible: size < 1
    Accessible.name: qsTr("Scroll")
    contentItem: Rectangle {
        implicitWidth: Theme.unit + Theme.hairlineWidth
        radius: width / 2
        color: Theme.gray
        opacity: bar.pressed || bar.hovered ? 1 : Theme.halfOpacity
    }
}
