import QtQuick
import Veranox.Controls

// Many of a kind, in sum.
Card {
    id: summary
    property string symbol
    property string countText
    property string statusSummary
    property string attentionSummary

    implicitHeight: Theme.tallRowHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: `${countText}, ${statusSummary}` + (attentionSummary ? `, ${attentionSummary}` : "")

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit * 3
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: summary.symbol
            color: Theme.secondary
            width: Theme.controlHeight
        }
        Label {
            text: summary.countText
            font.weight: Font.Medium
        }
        Label {
            text: summary.statusSummary
            color: Theme.secondary
            font.pixelSize: Theme.secondarySize
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    Row {
        visible: summary.attentionSummary.length > 0
        anchors.right: parent.right
        anchors.rightMargin: Theme.unit * 3
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.unit * 1.5
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: "exclamationmark.triangle.fill"
            size: Theme.bodySize
            color: Theme.warningText
        }
        Label {
            text: summary.attentionSummary
            color: Theme.warningText
            font.pixelSize: Theme.secondarySize
            font.weight: Font.Medium
        }
    }
}
