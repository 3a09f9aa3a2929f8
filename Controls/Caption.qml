import QtQuick
import Veranox.Controls

// The quiet line above a column or below a name.
Label {
    color: Theme.secondary
    font.pixelSize: Theme.captionSize
}
