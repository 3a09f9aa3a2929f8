import QtQuick
import Veranox.Controls
import Veranox.Popover

Banner {
    id: notice
    required property VeranoxServiceErrorBanner banner

    objectName: "serviceError"
    title: banner.title
    text: banner.text

    ActionButton {
        objectName: "restart"
        text: notice.banner.buttonTitle
        symbol: "arrow.clockwise"
        enabled: notice.banner.buttonEnabled
        onClicked: notice.banner.fix()
    }
}
