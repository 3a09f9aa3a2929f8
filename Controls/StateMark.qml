import QtQuick
import Veranox.Controls

// The runtime state of a tunnel or publication: a spinner, a sign or a dot, and its words as tool tip. The words
// also stand beside it: no state is told by colour alone.
Item {
    id: mark
    enum Kind { Spinner, Sign, Dot }

    property int kind: StateMark.Kind.Dot
    property color color: Theme.gray
    property string help

    implicitWidth: Theme.iconSize
    implicitHeight: Theme.iconSize
    Accessible.role: Accessible.Graphic
    Accessible.name: help

    StateDot {
        anchors.centerIn: parent
        visible: mark.kind === StateMark.Kind.Dot
        color: mark.color
    }
    Spinner {
        anchors.centerIn: parent
        visible: mark.kind === StateMark.Kind.Spinner
        size: Theme.sectionSize
    }
    Symbol {
        anchors.centerIn: parent
        visible: mark.kind === StateMark.Kind.Sign
        name: "nosign"
        size: Theme.sectionSize - 1
        color: mark.color
    }
    HoverHandler { id: pointer }
    Tip {
        text: mark.help
        wanted: pointer.hovered
    }
}
