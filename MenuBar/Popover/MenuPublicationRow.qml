import QtQuick
import Veranox.Controls
import Veranox.Popover

Item {
    id: line
    required property menuPublicationRow row
    required property int index
    required property VeranoxActivePublicationsView section
    property int gap
    property int titleWidth
    property int addressWidth
    property int actionsWidth

    objectName: "publication." + row.name
    implicitHeight: Theme.tallRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: `${row.title}, ${row.stateText}, ${row.target}` + (row.address ? `, ${row.address}` : "")

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
        roomBeside: address.x + copy.x - x - width - line.gap
    }
    Label {
        anchors.left: title.right
        anchors.leftMargin: line.gap
        anchors.right: address.left
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
    Item {
        id: address
        anchors.right: actions.left
        anchors.rightMargin: actions.width > 0 ? line.gap : 0
        width: line.addressWidth
        height: parent.height
        Label {
            anchors.left: parent.left
            anchors.right: line.row.isBlocked ? parent.right : copy.left
            y: title.nameCentre - height / 2
            text: line.row.address
            elide: Text.ElideMiddle
            leftPadding: line.row.isBlocked ? Theme.iconSize + Theme.unit : 0
            font.family: line.row.isBlocked ? Theme.family : Theme.fixedFamily
            color: line.row.isBlocked ? Theme.secondary : Theme.text
            Symbol {
                visible: line.row.isBlocked
                anchors.verticalCenter: parent.verticalCenter
                name: "nosign"
                size: Theme.bodySize
                color: Theme.secondary
            }
            HoverHandler { id: addressPointer }
            Tip {
                text: line.row.addressHelp
                wanted: addressPointer.hovered
            }
            font.pixelSize: Theme.captionSize
        }
        CopyButton {
            id: copy
            objectName: "copy." + line.row.name
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: "Copy the address"
            visible: !line.row.isBlocked && line.row.address.length > 0
            subject: line.row.title
            justCopied: line.row.justCopied
            onClicked: line.section.copy(line.row.name, line.row.address)
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
        retryEnabled: line.row.retryEnabled
        isRetrying: line.row.isRetrying
        retryHelp: "Retry — restart this publication"
        isOn: line.row.isOn
        canSwitch: line.row.canSwitch
        isSwitching: line.row.isSwitching
        toggleHelp: line.row.toggleHelp
        onRetried: line.section.retry(line.row.name)
        onSwitched: on => line.section.setEnabled(line.row.name, on)
    }
}
