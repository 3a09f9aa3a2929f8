import QtQuick
import QtQuick.Templates as T
import Veranox.Controls
import Veranox.Popover

// The popover as it stands on the screen: with corners and a shadow where the desktop blends windows, else with a plain
// edge; without either inside an ordinary window.
FocusScope {
    id: popover
    enum Surface { Blended, Plain, Ordinary }

    required property VeranoxMenuView view
    property int surface: MenuPopover.Surface.Plain
    readonly property int margin: surface === MenuPopover.Surface.Blended ? Theme.shadowSize : 0
    readonly property int radius: surface === MenuPopover.Surface.Blended ? Theme.popoverRadius : 0

    objectName: "popover"
    implicitWidth: menu.implicitWidth + margin * 2
    implicitHeight: view.presentation.viewportHeight + margin * 2
    focus: true
    Keys.onEscapePressed: popover.view.dismiss()
    Accessible.role: Accessible.Pane
    Accessible.name: "Veranox"

    MouseArea { // the shadow is no part of the popover
        anchors.fill: parent
        enabled: popover.margin > 0
        onPressed: popover.view.dismiss()
    }
    SoftShadow {
        visible: popover.margin > 0
        anchors.fill: parent
        extent: popover.margin
        radius: popover.radius
        strength: Theme.shadowStrength
    }
    Rectangle {
        id: panel
        anchors.fill: parent
        anchors.margins: popover.margin
        radius: popover.radius
        color: Theme.window
        MouseArea { anchors.fill: parent }
    }
    Flickable {
        id: viewport
        objectName: "viewport"
        anchors.fill: panel
        contentWidth: width
        contentHeight: menu.implicitHeight
        interactive: popover.view.presentation.requiresScrolling
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive
        T.ScrollBar.vertical: ThinScrollBar {
            topPadding: popover.radius / 2
            bottomPadding: popover.radius / 2
        }
        FocusReveal {
            flickable: viewport
            room: Theme.pageMargin
        }

        MenuView {
            id: menu
            width: viewport.width
            view: popover.view
            onImplicitHeightChanged: popover.view.presentation.adoptContentHeight(implicitHeight)
            Component.onCompleted: popover.view.presentation.adoptContentHeight(implicitHeight)
        }
    }
    Rectangle { // the edge, over everything
        anchors.fill: panel
        visible: popover.surface !== MenuPopover.Surface.Ordinary
        radius: popover.radius
        color: "transparent"
        border.width: Theme.hairlineWidth
        border.color: popover.margin > 0 ? Theme.hairline : Theme.controlBorder
    }
}
