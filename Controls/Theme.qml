pragma Singleton
import QtQuick
import Veranox.Controls

// Every colour, size and duration that is drawn.
QtObject {
    readonly property bool dark: Desktop.dark
    readonly property bool reducedMotion: Desktop.reducedMotion
    readonly property string family: Desktop.family
    readonly property string fixedFamily: Desktop.fixedFamily

    // What people need to read a text and to see a mark, by the web accessibility guidelines
    readonly property real textContrast: 4.5
    readonly property real markContrast: 3

    // Surfaces
    readonly property color window: dark ? "#1C1C1E" : "#F5F5F7"
    readonly property color card: dark ? "#2C2C2E" : "#FFFFFF"
    readonly property color control: dark ? "#3A3A3C" : "#FFFFFF"
    readonly property color controlHovered: dark ? "#444447" : "#F2F2F4"
    readonly property color controlPressed: dark ? "#4E4E51" : "#E6E6EA"
    readonly property color hover: dark ? "#14FFFFFF" : "#0D000000"
    readonly property color pressed: dark ? "#24FFFFFF" : "#1A000000"
    readonly property color hairline: dark ? "#1FFFFFFF" : "#14000000"
    readonly property color controlBorder: dark ? "#24FFFFFF" : "#1F000000"

    // Text
    readonly property color text: dark ? "#F5F5F7" : "#1D1D1F"
    readonly property color secondary: dark ? "#A1A1A6" : "#6E6E73"
    readonly property color accentText: Contrast.reach(Contrast.reach(accent, card, textContrast), window, textContrast)
    readonly property color warningText: dark ? "#FFB340" : "#9A5200"
    readonly property color errorText: dark ? "#FF8078" : "#C4281C"
    readonly property color okText: dark ? "#5FDD7F" : "#1F7A37"

    // Fills, and the text on them
    readonly property color accentBase: Desktop.accent.valid ? Desktop.accent : dark ? "#0A84FF" : "#007AFF"
    readonly property color accent: Contrast.reach(Contrast.reach(accentBase, card, markContrast), window, markContrast)
    readonly property color accentFill: Contrast.reach(accentBase, fillText, textContrast)
    readonly property color accentFillHovered: Qt.darker(accentFill, 1.1)
    readonly property color dangerFill: dark ? "#C93B33" : "#D1352B"
    readonly property color dangerFillHovered: dark ? "#B5322B" : "#BA2D24"
    readonly property color fillText: "#FFFFFF"
    readonly property color errorSurface: dark ? "#3A2423" : "#FDEDEC"
    readonly property color errorBorder: dark ? "#5C302D" : "#F6CDCA"
    readonly property color warningSurface: dark ? "#382C1A" : "#FDF3E3"
    readonly property color warningBorder: dark ? "#574425" : "#F3DDB5"
    readonly property color toolTip: dark ? "#48484A" : "#2C2C2E"
    readonly property color toolTipText: "#F5F5F7"

    // Marks
    readonly property color green: dark ? "#30D158" : "#34C759"
    readonly property color orange: dark ? "#FF9F0A" : "#FF9500"
    readonly property color red: dark ? "#FF453A" : "#FF3B30"
    readonly property color gray: "#8E8E93"
    readonly property color switchOff: dark ? "#5A5A5F" : "#C7C7CC"
    readonly property color switchOn: dark ? "#2FB457" : "#2FB457"
    readonly property color brandGreen: "#4EC98F"
    readonly property real halfOpacity: 0.5
    readonly property real disabledOpacity: 0.4
    readonly property real tintOpacity: 0.1

    // Sizes, in logical pixels on a grid of 4
    readonly property int captionSize: 11
    readonly property int secondarySize: 12
    readonly property int bodySize: 13
    readonly property int sectionSize: 15
    readonly property int titleSize: 20
    readonly property int unit: 4
    readonly property int controlHeight: 28
    readonly property int rowHeight: 44
    readonly property int tallRowHeight: 52
    readonly property int pageMargin: 24
    readonly property int cardRadius: 10
    readonly property int controlRadius: 7
    readonly property int popoverRadius: 14
    readonly property int hairlineWidth: 1
    readonly property int focusWidth: 2
    readonly property int iconSize: 16
    readonly property int dotSize: 8
    readonly property int shadowSize: 24
    readonly property real shadowStrength: dark ? 0.5 : 0.22

    // Motion, in milliseconds; none when the desktop asks for none
    readonly property int quick: reducedMotion ? 0 : 120
    readonly property int calm: reducedMotion ? 0 : 180
    readonly property int spinnerStep: 100
    readonly property int tipDelay: 600

    function tone(which: int): color {
        switch (which) {
        case Tone.FaintGray:
            return Qt.alpha(gray, halfOpacity)
        case Tone.Green:
            return green
        case Tone.Orange:
            return orange
        case Tone.Red:
            return red
        }
        return gray
    }

    function profileColor(identifier: string): color {
        return ProfileColors.color(identifier, dark)
    }
}
