import QtQuick
import Veranox.Controls
import Veranox.Popover

Card {
    objectName: "emptyProfiles"
    implicitHeight: words.implicitHeight + Theme.pageMargin * 2
    Accessible.role: Accessible.StaticText
    Accessible.name: title.text
    Accessible.description: advice.text

    Column {
        id: words
        anchors.centerIn: parent
        width: parent.width - Theme.pageMargin * 2
        spacing: Theme.unit * 2
        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "point.3.connected.trianglepath.dotted"
            size: Theme.controlHeight
            color: Theme.secondary
        }
        Label {
            id: title
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Create your first profile"
            font.pixelSize: Theme.sectionSize
            font.weight: Font.DemiBold
        }
        Label {
            id: advice
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Add a tailnet, choose its suffix, then Veranox will route matching hostnames through that profile."
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
}
