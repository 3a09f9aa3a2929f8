import QtQuick

// The one soft shadow, around the item that it stands behind: layers of little strength, as software draws them well.
Item {
    id: shadow
    property int radius: Theme.popoverRadius
    readonly property int layers: Theme.shadowSize / 2

    Repeater {
        model: shadow.layers
        Rectangle {
            required property int index
            readonly property int spread: (index + 1) * 2 - Theme.unit
            x: -spread
            y: -spread + Theme.unit
            width: shadow.width + spread * 2
            height: shadow.height + spread * 2
            radius: shadow.radius + spread
            color: Theme.shadow
            opacity: (Theme.dark ? 0.035 : 0.014)
        }
    }
}
