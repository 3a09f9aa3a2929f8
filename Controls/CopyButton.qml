import QtQuick
import Veranox.Controls

// Copies something, and says so with a check mark for a moment.
IconButton {
    property bool justCopied: false
    property string subject // whose text it is, for a screen reader

    symbol: justCopied ? "checkmark" : "doc.on.doc"
    foreground: justCopied ? Theme.okText : Theme.secondary
    Accessible.description: justCopied ? qsTr("Copied") : subject
}
