pragma ComponentBehavior: Bound
import QtQuick
import Veranox.Controls
import Veranox.Popover

// The publications: a row for each under the heads of the columns, or all in sum.
Item {
    id: view
    required property VeranoxActivePublicationsView section
    readonly property int gap: Theme.unit * 3
    readonly property int titleWidth: 248
    readonly property int addressWidth: 240
    readonly property int actionsWidth: section.canOperate ? 72 : 0

    objectName: "publications"
    implicitHeight: section.isCompact ? summary.implicitHeight : rows.y + rows.implicitHeight

    CompactSummary {
        id: summary
        visible: view.section.isCompact
        width: parent.width
        symbol: "globe"
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
            text: "PUBLICATION"
        }
        Caption {
            x: view.gap * 2 + view.titleWidth
            text: "SERVES"
        }
        Caption {
            id: addressHead
            x: parent.width - view.gap - view.actionsWidth - (view.actionsWidth > 0 ? view.gap : 0) - view.addressWidth
            text: "ADDRESS"
        }
    }
    Card {
        id: rows
        visible: !view.section.isCompact
        y: head.height
        width: parent.width
        implicitHeight: column.implicitHeight
        Accessible.role: Accessible.List
        Accessible.name: "Publications"
        Column {
            id: column
            width: parent.width
            Repeater {
                model: view.section.rows
                MenuPublicationRow {
                    width: column.width
                    section: view.section
                    gap: view.gap
                    titleWidth: view.titleWidth
                    addressWidth: view.addressWidth
                    actionsWidth: view.actionsWidth
                }
            }
        }
    }
}
