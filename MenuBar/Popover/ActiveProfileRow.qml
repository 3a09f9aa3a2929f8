import QtQuick
import Veranox.Controls
import Veranox.Popover

Item {
    id: line
    required property activeProfileRow row
    required property int index
    readonly property int gap: Theme.unit * 3
    readonly property int nameWidth: 160
    readonly property int backendWidth: 72
    readonly property int hostnameWidth: 144
    readonly property int statusWidth: 76

    objectName: "profile." + row.name
    implicitHeight: Theme.rowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: `${row.displayName}, ${row.suffix}${row.moreSuffixes}, ${row.backend}, ${row.hostname}, ${row.status}`

    Hairline {
        visible: line.index > 0
        x: tile.x + tile.width + line.gap
        width: parent.width - x
    }
    Item {
        id: tile
        x: line.gap
        width: Theme.controlHeight
        height: width
        anchors.verticalCenter: parent.verticalCenter
        Rectangle {
            anchors.fill: parent
            radius: Theme.controlRadius
            color: Qt.tint(Theme.card, Qt.alpha(Theme.profileColor(line.row.accent), Theme.tintOpacity)) // no seams
        }
        Symbol {
            anchors.centerIn: parent
            name: line.row.symbol
            color: Theme.profileColor(line.row.accent)
        }
    }
    Label {
        id: name
        anchors.left: tile.right
        anchors.leftMargin: line.gap
        anchors.verticalCenter: parent.verticalCenter
        width: line.nameWidth
        text: line.row.displayName
        font.weight: Font.Medium
    }
    Item {
        id: suffixes
        anchors.left: name.right
        anchors.leftMargin: line.gap
        anchors.right: backend.left
        anchors.rightMargin: line.gap
        height: parent.height
        Label {
            id: suffix
            width: Math.min(implicitWidth, parent.width - more.width - Theme.unit)
            height: parent.height
            text: line.row.suffix
            elide: Text.ElideMiddle
            color: Theme.secondary
            font.pixelSize: Theme.secondarySize
        }
        Caption {
            id: more
            anchors.left: suffix.right
            anchors.leftMargin: Theme.unit
            height: parent.height
            text: line.row.moreSuffixes
            font.weight: Font.Medium
        }
        HoverHandler { id: pointer }
        Tip {
            text: line.row.suffixHelp
            wanted: pointer.hovered
        }
    }
    Label {
        id: backend
        anchors.right: hostname.left
        anchors.rightMargin: line.gap
        anchors.verticalCenter: parent.verticalCenter
        width: line.backendWidth
        text: line.row.backend
        color: Theme.secondary
        font.pixelSize: Theme.secondarySize
    }
    Label {
        id: hostname
        anchors.right: status.left
        anchors.rightMargin: line.gap
        anchors.verticalCenter: parent.verticalCenter
        width: line.hostnameWidth
        text: line.row.hostname
        elide: Text.ElideMiddle
        color: Theme.secondary
        font.pixelSize: Theme.secondarySize
    }
    Row {
        id: status
        anchors.right: parent.right
        anchors.rightMargin: line.gap
        anchors.verticalCenter: parent.verticalCenter
        width: line.statusWidth
        layoutDirection: Qt.RightToLeft
        spacing: Theme.unit
        Label {
            text: line.row.status
            color: line.row.isOK ? Theme.okText : Theme.warningText
            font.pixelSize: Theme.secondarySize
            font.weight: Font.Medium
        }
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: line.row.isOK ? "checkmark" : "exclamationmark.triangle.fill"
            size: Theme.bodySize
            color: line.row.isOK ? Theme.okText : Theme.warningText
        }
    }
}
