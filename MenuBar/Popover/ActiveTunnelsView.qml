pragma ComponentBehavior: Bound
import QtQuick
import Veranox.Controls
import Veranox.Popover

// The tunnels: a row for each under the heads of the columns, or all in sum.
Item {
    id: view
    required property VeranoxActiveTunnelsView section
    readonly property int gap: Theme.unit * 3
    readonly property int titleWidth: 248
    readonly property int modeWidth: 48
    readonly property int endpointWidth: 150
    readonly property int actionsWidth: section.canOperate ? 72 : 0

    objectName: "tunnels"
    implicitHeight: section.isCompact ? summary.implicitHeight : rows.y + rows.implicitHeight

    CompactSummary {
        id: summary
        visible: view.section.isCompact
        width: parent.width
        symbol: "arrow.triangle.2.circlepath"
        countText: view.section.countText
        statusSummary: view.section.statusSummary
        attentionSummary: view.section.attentionSummary
    }
    Item {
        id: head
        visible: !view.section.isCompact
        width: parent.width
        height: Theme.unit * 5
        Caption {
            x: view.gap
            text: "TUNNEL"
        }
        Caption {
            x: view.gap * 2 + view.titleWidth
            text: "TARGET"
        }
        Caption {
            x: endpointHead.x - view.gap - view.modeWidth
            text: "MODE"
        }
        Caption {
            id: endpointHead
            x: parent.width - view.gap - view.actionsWidth - (view.actionsWidth > 0 ? view.gap : 0) - view.endpointWidth
            text: "ENDPOINT"
        }
    }
    Card {
        id: rows
        visible: !view.section.isCompact
        y: head.height
        width: parent.width
        implicitHeight: column.implicitHeight
        Accessible.role: Accessible.List
        Accessible.name: "Tunnels"
        Column {
            id: column
            width: parent.width
            Repeater {
                model: view.section.rows
                MenuTunnelRow {
                    width: column.width
                    section: view.section
                    gap: view.gap
                    titleWidth: view.titleWidth
                    modeWidth: view.modeWidth
                    endpointWidth: view.endpointWidth
                    actionsWidth: view.actionsWidth
                }
            }
        }
    }
}
