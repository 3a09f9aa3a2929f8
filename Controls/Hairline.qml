import QtQuick
import Veranox.Controls

Rectangle {
    implicitHeight: Theme.hairlineWidth
    color: Theme.hairline
}
