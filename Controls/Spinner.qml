pragma ComponentBehavior: Bound
import QtQuick
import Veranox.Controls

// Something is under way. Eight dots, one step at a time: ten paints a second, and none while nobody sees it.
Item {
    id: spinner
    property int size: Theme.iconSize
    property color color: Theme.secondary
    property int step: 0
    readonly property int count: 8

    width: size
    height: size
    Accessible.ignored: true

    Timer {
        running: spinner.visible && !Theme.reducedMotion
        interval: Theme.spinnerStep
        repeat: true
        onTriggered: spinner.step = (spinner.step + 1) % spinner.count
    }
    Repeater {
        model: spinner.count
        Rectangle {
            required property int index
            readonly property real angle: index * 2 * Math.PI / spinner.count
            readonly property real reach: (spinner.size - width) / 2
            width: spinner.size / 6
            height: width
            radius: width / 2
            color: spinner.color
            opacity: 1 - ((spinner.step - index + spinner.count) % spinner.count) / spinner.count
            x: spinner.size / 2 - width / 2 + Math.sin(angle) * reach
            y: spinner.size / 2 - height / 2 - Math.cos(angle) * reach
        }
    }
}
