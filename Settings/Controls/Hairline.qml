import QtQuick

Rectangle {
    implicitHeight: Theme.hairlineWidth
    color: Theme.hairline
}
