import QtQuick
import Veranox.Controls

// The mark of the state, the name with the colour of its profile, and below it the state in words, which may go on under
// the columns beside the name.
Item {
    id: title
    property int mark
    property int tone
    property string text
    property string accent
    property string stateText
    property string stateHelp
    property bool needsPerson: false
    property real roomBeside: 0
    readonly property real nameCentre: words.y + name.height / 2

    StateMark {
        id: sign
        objectName: "stateMark"
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.controlHeight
        kind: title.mark
        color: Theme.tone(title.tone)
        help: title.stateHelp
    }
    Rectangle {
        id: bar
        anchors.left: sign.right
        anchors.leftMargin: Theme.unit * 2
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.unit - Theme.hairlineWidth
        height: Theme.controlHeight
        radius: width / 2
        color: Theme.profileColor(title.accent)
    }
    Column {
        id: words
        anchors.left: bar.right
        anchors.leftMargin: Theme.unit * 2
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        Label {
            id: name
            width: parent.width
            text: title.text
            font.weight: Font.Medium
        }
        Caption {
            width: parent.width + title.roomBeside
            text: title.stateText.replace(/\s+/g, " ")
            color: title.needsPerson ? Theme.warningText : Theme.secondary
        }
    }
}
