import QtQuick

Window {
    visible: false
    width: 320
    height: 240

    Text {
        anchors.centerIn: parent
        text: "Floor"
    }
}
