import QtQuick

// The runtime state of a tunnel or publication: a spinner, a sign or a dot, and its words as tool tip. The shapes differ
// so that no state is told by colour alone.
Item {
    id: mark
    enum Kind { Dot, Ring, Spinner, Sign, Warning }

    property int kind: StateMark.Kind.Dot
    property color color: Theme.gray
    property string help

    implicitWidth: Theme.iconSize
    implicitHeight: Theme.iconSize
    Accessible.role: Accessible.Indicator
    Accessible.name: help

    StateDot {
        anchors.centerIn: parent
        visible: mark.kind === StateMark.Kind.Dot
        color: mark.color
    }
    Rectangle {
        anchors.centerIn: parent
        visible: mark.kind === StateMark.Kind.Ring
        width: Theme.dotSize
        height: Theme.dotSize
        radius: width / 2
        color: "transparent"
        border.width: Theme.focusWidth
        border.color: mark.color
    }
    Spinner {
        anchors.centerIn: parent
        visible: mark.kind === StateMark.Kind.Spinner
        size: Theme.sectionSize
    }
    Symbol {
        anchors.centerIn: parent
        visible: mark.kind === StateMark.Kind.Sign || mark.kind === StateMark.Kind.Warning
        name: mark.kind === StateMark.Kind.Sign ? "nosign" : "exclamationmark.circle.fill"
        size: Theme.sectionSize - 1
        color: mark.color
    }
    HoverHandler { id: pointer }
    Tip {
        text: mark.help
        wanted: pointer.hovered
    }
}
