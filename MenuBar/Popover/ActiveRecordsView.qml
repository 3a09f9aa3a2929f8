pragma ComponentBehavior: Bound
import QtQuick
import Veranox.Controls
import Veranox.Popover

// Tunnels or publications: a row for each under the heads of the columns, or all in sum.
Item {
    id: view
    required property VeranoxActiveRecordsView section
    property string kind // of one of them, in the names of objects
    property string name // of all of them
    property string symbol
    property string titleHead
    property string targetHead
    property string modeHead
    property string addressHead
    property int modeWidth: 0 // none: the column is left out
    property int addressWidth
    property string copyHelp
    property string retryHelp
    readonly property int gap: Theme.unit * 3
    readonly property int titleWidth: 248
    readonly property int actionsWidth: section.canOperate ? 72 : 0

    implicitHeight: section.isCompact ? summary.implicitHeight : rows.y + rows.implicitHeight

    CompactSummary {
        id: summary
        visible: view.section.isCompact
        width: parent.width
        symbol: view.symbol
        countText: view.section.countText
        statusSummary: view.section.statusSummary
        attentionSummary: view.section.attentionSummary
    }
    Item {
        id: head
        objectName: view.kind + "Heads"
        visible: !view.section.isCompact
        width: parent.width
        height: Theme.unit * 5
        Caption {
            x: view.gap
            text: view.titleHead
        }
        Caption {
            x: view.gap * 2 + view.titleWidth
            text: view.targetHead
        }
        Caption {
            visible: view.modeWidth > 0
            x: addressHead.x - view.gap - view.modeWidth
            text: view.modeHead
        }
        Caption {
            id: addressHead
            x: parent.width - view.gap - view.actionsWidth - (view.actionsWidth > 0 ? view.gap : 0) - view.addressWidth
            text: view.addressHead
        }
    }
    Card {
        id: rows
        visible: !view.section.isCompact
        y: head.height
        width: parent.width
        implicitHeight: column.implicitHeight
        Accessible.role: Accessible.List
        Accessible.name: view.name
        Column {
            id: column
            width: parent.width
            Repeater {
                model: view.section.rows
                MenuRow {
                    width: column.width
                    section: view.section
                    kind: view.kind
                    gap: view.gap
                    titleWidth: view.titleWidth
                    modeWidth: view.modeWidth
                    addressWidth: view.addressWidth
                    actionsWidth: view.actionsWidth
                    copyHelp: view.copyHelp
                    retryHelp: view.retryHelp
                }
            }
        }
    }
}
