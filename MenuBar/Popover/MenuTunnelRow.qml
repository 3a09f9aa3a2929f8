import QtQuick
import Veranox.Controls
import Veranox.Popover

Item {
    id: line
    required property menuTunnelRow row
    required property int index
    required property VeranoxActiveTunnelsView section
    property int gap
    property int titleWidth
    property int modeWidth
    property int endpointWidth
    property int actionsWidth

    objectName: "tunnel." + row.name
    implicitHeight: Theme.tallRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: `${row.title}, ${row.stateText}, ${row.target}, ${row.mode}, ${row.endpoint}`

    Hairline {
        visible: line.index > 0
        x: line.gap * 2 + Theme.controlHeight
        width: parent.width - x
    }
    RowTitle {
        id: title
        x: line.gap
        width: line.titleWidth
        height: parent.height
        mark: line.row.mark
        tone: line.row.tone
        text: line.row.title
        accent: line.row.accent
        stateText: line.row.stateText
        needsPerson: line.row.canRetry
        roomBeside: endpoint.x + copy.x - x - width - line.gap
    }
    Label {
        anchors.left: title.right
        anchors.leftMargin: line.gap
        anchors.right: mode.left
        anchors.rightMargin: line.gap
        y: title.nameCentre - height / 2
        text: line.row.target
        elide: Text.ElideMiddle
        color: Theme.secondary
        font.pixelSize: Theme.secondarySize
        HoverHandler { id: pointer }
        Tip {
            text: line.row.target
            wanted: pointer.hovered
        }
    }
    Label {
        id: mode
        anchors.right: endpoint.left
        anchors.rightMargin: line.gap
        y: title.nameCentre - height / 2
        width: line.modeWidth
        text: line.row.mode
        color: Theme.secondary
        font.pixelSize: Theme.secondarySize
    }
    Item {
        id: endpoint
        anchors.right: actions.left
        anchors.rightMargin: actions.width > 0 ? line.gap : 0
        width: line.endpointWidth
        height: parent.height
        Label {
            anchors.left: parent.left
            anchors.right: copy.left
            y: title.nameCentre - height / 2
            text: line.row.endpoint
            elide: Text.ElideMiddle
            font.family: Theme.fixedFamily
            font.pixelSize: Theme.captionSize
        }
        CopyButton {
            id: copy
            objectName: "copy." + line.row.name
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: "Copy the local endpoint for your client"
            subject: line.row.title
            justCopied: line.row.justCopied
            onClicked: line.section.copy(line.row.name, line.row.endpoint)
        }
    }
    RowActions {
        id: actions
        anchors.right: parent.right
        anchors.rightMargin: line.gap
        height: parent.height
        width: line.actionsWidth
        visible: line.section.canOperate
        title: line.row.title
        canRetry: line.row.canRetry
        retryEnabled: !line.row.isRetrying
        isRetrying: line.row.isRetrying
        retryHelp: "Retry — restart this tunnel"
        isOn: line.row.isOn
        canSwitch: true
        isSwitching: line.row.isSwitching
        toggleHelp: line.row.toggleHelp
        onRetried: line.section.retry(line.row.name)
        onSwitched: on => line.section.setEnabled(line.row.name, on)
    }
}
