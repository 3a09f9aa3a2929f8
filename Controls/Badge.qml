import QtQuick
import Veranox.Controls

// A state in a word, with a shape of its own beside the colour.
Rectangle {
    id: badge
    enum Kind { Ok, Warning, Offline, Error }

    property string text
    property int kind: Badge.Kind.Offline
    readonly property color foreground: {
        switch (kind) {
        case Badge.Kind.Ok:
            return Theme.okText
        case Badge.Kind.Warning:
            return Theme.warningText
        case Badge.Kind.Error:
            return Theme.errorText
        }
        return Theme.secondary
    }
    readonly property string symbol: {
        switch (kind) {
        case Badge.Kind.Ok:
            return "checkmark"
        case Badge.Kind.Warning:
            return "exclamationmark.triangle.fill"
        case Badge.Kind.Error:
            return "exclamationmark.circle.fill"
        }
        return "power"
    }

    implicitWidth: words.implicitWidth + Theme.unit * 4
    implicitHeight: Theme.unit * 5
    radius: height / 2
    color: "transparent"
    border.width: Theme.hairlineWidth
    border.color: Theme.hairline
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Row {
        id: words
        anchors.centerIn: parent
        spacing: Theme.unit
        Symbol {
            name: badge.symbol
            size: Theme.secondarySize
            color: badge.foreground
            anchors.verticalCenter: parent.verticalCenter
        }
        Text {
            text: badge.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.captionSize
            font.weight: Font.Medium
            color: badge.foreground
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
    }
}
