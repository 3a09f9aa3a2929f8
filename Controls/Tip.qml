import QtQuick
import QtQuick.Templates as T
import Veranox.Controls

// The tool tip of the item that it is a child of. Nothing of it exists until the pointer rests there.
Item {
    id: tip
    property string text
    property bool wanted: false // whether the pointer or the keyboard is on the item

    anchors.fill: parent
    Accessible.ignored: true

    // Qt 6.4 loads no bound component.
    // qmllint disable unqualified
    Loader {
        active: tip.wanted && tip.text.length > 0
        sourceComponent: T.ToolTip {
            parent: tip
            text: tip.text
            visible: true
            delay: Theme.tipDelay
            x: Math.round((tip.width - width) / 2)
            y: tip.height + Theme.unit
            margins: Theme.unit
            padding: Theme.unit
            leftPadding: Theme.unit * 2
            rightPadding: Theme.unit * 2
            implicitWidth: Math.min(contentItem.implicitWidth, Theme.tallRowHeight * 6) + leftPadding + rightPadding
            implicitHeight: contentHeight + topPadding + bottomPadding
            closePolicy: T.Popup.NoAutoClose
            contentItem: Text {
                text: tip.text
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Theme.toolTipText
                font.family: Theme.family
                font.pixelSize: Theme.captionSize
            }
            background: Rectangle {
                color: Theme.toolTip
                radius: Theme.unit
            }
        }
    }
    // qmllint enable unqualified
}
