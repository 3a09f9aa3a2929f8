pragma ComponentBehavior: Bound
import QtQuick
import Veranox.Controls
import Veranox.Popover

// Everything in the popover, top to bottom.
Item {
    id: menu
    required property VeranoxMenuView view
    readonly property int inset: 18
    readonly property int contentWidth: 760

    implicitWidth: contentWidth + inset * 2
    implicitHeight: column.implicitHeight + inset * 2

    Column {
        id: column
        x: menu.inset
        y: menu.inset
        width: menu.width - menu.inset * 2
        spacing: Theme.unit * 4

        MenuHeader {
            width: parent.width
            header: menu.view.header
        }
        Hairline { width: parent.width }
        ServiceErrorBanner {
            visible: menu.view.banner.visible
            width: parent.width
            banner: menu.view.banner
        }
        Card {
            visible: menu.view.hasProfiles
            width: parent.width
            implicitHeight: profiles.implicitHeight
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Profiles")
            Column {
                id: profiles
                objectName: "profiles"
                width: parent.width
                Repeater {
                    model: menu.view.profiles
                    ActiveProfileRow { width: profiles.width }
                }
            }
        }
        EmptyProfilesView {
            visible: !menu.view.hasProfiles
            width: parent.width
        }
        ActiveTunnelsView {
            visible: menu.view.tunnels.visible
            width: parent.width
            section: menu.view.tunnels
        }
        FailureLine {
            objectName: "tunnelFailure"
            width: parent.width
            text: menu.view.tunnelFailure
        }
        ActivePublicationsView {
            visible: menu.view.publications.visible
            width: parent.width
            section: menu.view.publications
        }
        FailureLine {
            objectName: "publicationFailure"
            width: parent.width
            text: menu.view.publicationFailure
        }
        MenuFooter {
            width: parent.width
            footer: menu.view.footer
        }
    }
}
