import QtQuick
import Veranox.Controls

// Every control in each of its looks.
Rectangle {
    implicitWidth: 760
    implicitHeight: sheet.implicitHeight + Theme.pageMargin * 2
    color: Theme.window

    Column {
        id: sheet
        x: Theme.pageMargin
        y: Theme.pageMargin
        width: parent.width - Theme.pageMargin * 2
        spacing: Theme.unit * 4

        Label {
            text: "Controls"
            font.pixelSize: Theme.titleSize
            font.weight: Font.DemiBold
        }
        Row {
            spacing: Theme.unit * 2
            ActionButton { text: "Refresh"; symbol: "arrow.clockwise" }
            ActionButton { text: "Save"; look: ActionButton.Look.Prominent }
            ActionButton { text: "Quit Veranox"; symbol: "power"; look: ActionButton.Look.Destructive }
            ActionButton { text: "Manage…"; look: ActionButton.Look.Quiet }
            ActionButton { text: "Off"; symbol: "globe"; enabled: false }
            IconButton { text: "Refresh"; symbol: "arrow.clockwise" }
            IconButton { text: "Refresh"; symbol: "arrow.clockwise"; enabled: false }
            CopyButton { text: "Copy" }
            CopyButton { text: "Copy"; justCopied: true }
        }
        Row {
            spacing: Theme.unit * 4
            ToggleSwitch { text: "on"; on: true }
            ToggleSwitch { text: "off" }
            ToggleSwitch { text: "busy"; on: true; busy: true }
            ToggleSwitch { text: "disabled"; on: true; enabled: false }
            Spinner { anchors.verticalCenter: parent.verticalCenter }
            StateMark { color: Theme.orange; anchors.verticalCenter: parent.verticalCenter }
            StateMark { color: Theme.green; anchors.verticalCenter: parent.verticalCenter }
            StateMark { color: Theme.gray; kind: StateMark.Kind.Sign; anchors.verticalCenter: parent.verticalCenter }
        }
        Row {
            spacing: Theme.unit * 2
            Badge { text: "Published"; kind: Badge.Kind.Ok }
            Badge { text: "Unreachable"; kind: Badge.Kind.Warning }
            Badge { text: "Stopped"; kind: Badge.Kind.Offline }
            Badge { text: "Error"; kind: Badge.Kind.Error }
        }
        Row {
            spacing: Theme.unit * 5
            Item {
                width: focused.width
                height: focused.height
                ActionButton { id: focused; text: "With focus"; FocusRing { } }
            }
            Item {
                width: ring.width
                height: ring.height
                IconButton { id: ring; text: "x"; symbol: "plus"; FocusRing { } }
            }
        }
        Banner {
            width: parent.width
            title: "Veranox service stopped"
            text: "The local Veranox service isn't running, so traffic isn't being routed."
            ActionButton { text: "Restart Veranox"; symbol: "arrow.clockwise" }
        }
        Banner {
            width: parent.width
            severe: false
            title: "Connected clients will drop"
            text: "Anything pointed at a Veranox endpoint loses connectivity until Veranox starts again."
        }
        Flow {
            width: parent.width
            spacing: Theme.unit * 3
            Repeater {
                model: ["briefcase.fill", "building.2.fill", "person.crop.circle.fill", "house.fill", "laptopcomputer",
                    "desktopcomputer", "server.rack", "externaldrive.fill", "network", "wifi",
                    "antenna.radiowaves.left.and.right", "globe.americas.fill", "cloud.fill", "shield.fill", "lock.fill",
                    "key.fill", "bolt.fill", "flame.fill", "leaf.fill", "star.fill", "flag.fill", "gearshape.fill",
                    "stethoscope", "macwindow", "slider.horizontal.3", "point.3.connected.trianglepath.dotted", "nosign"]
                Symbol {
                    required property string modelData
                    name: modelData
                    size: Theme.titleSize
                }
            }
        }
    }
}
