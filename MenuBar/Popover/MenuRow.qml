import QtQuick
import Veranox.Controls
import Veranox.Popover

// One tunnel or publication.
Item {
    id: line
    required property menuRow row
    required property int index
    required property VeranoxActiveRecordsView section
    property string kind
    property int gap
    property int titleWidth
    property int modeWidth
    property int addressWidth
    property int actionsWidth
    property string copyHelp
    property string retryHelp

    objectName: `${kind}.${row.name}`
    implicitHeight: Theme.tallRowHeight
    Accessible.role: Accessible.ListItem
    Accessible.name: `${row.title}, ${row.stateText}, ${row.target}`
        + (row.mode ? `, ${row.mode}` : "") + (row.address ? `, ${row.address}` : "")

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
        stateHelp: line.row.stateHelp
        needsPerson: line.row.canRetry
        roomBeside: address.x + copy.x - x - width - line.gap
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
        visible: line.modeWidth > 0
        anchors.right: address.left
        anchors.rightMargin: visible ? line.gap : 0
        y: title.nameCentre - height / 2
        width: line.modeWidth
        text: line.row.mode
        color: Theme.secondary
        font.pixelSize: Theme.secondarySize
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
            font.pixelSize: Theme.captionSize
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
        }
        CopyButton {
            id: copy
            objectName: "copy." + line.row.name
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: line.copyHelp
            visible: line.row.canCopy && !line.row.isBlocked
            subject: line.row.title
            justCopied: line.row.justCopied
            onClicked: line.section.copy(line.row.name, line.row.address)
        }
    }
    RowControls {
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
        retryHelp: line.retryHelp
        isOn: line.row.isOn
        canSwitch: line.row.canSwitch
        isSwitching: line.row.isSwitching
        toggleHelp: line.row.toggleHelp
        onRetried: line.section.retry(line.row.name)
        onSwitched: on => line.section.setEnabled(line.row.name, on)
    }
}
