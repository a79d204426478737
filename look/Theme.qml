// Every colour, size, radius and duration of the application, by its name in the design language.
//
// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick
import Lumbra.Look

QtObject {
    id: theme

    readonly property bool highContrast: Comfort.highContrast
    readonly property bool reducedMotion: Comfort.reducedMotion

    // Surfaces, from the back to the front.
    readonly property color stage: "#0B0B0D"
    readonly property color window: "#121215"
    readonly property color pane: "#17171B"
    readonly property color raised: "#1F1F25"
    readonly property color well: "#1A1A1F"
    readonly property color hover: white(0.06)
    readonly property color press: white(0.10)
    readonly property color line: white(highContrast ? 0.40 : 0.08)
    readonly property color control: white(0.08)
    readonly property color controlHover: white(0.13)
    readonly property color controlPress: white(0.18)
    readonly property color menuHover: white(0.09)
    readonly property color edge: white(highContrast ? 0.60 : 0.24)
    readonly property color thumb: white(highContrast ? 0.50 : 0.18)
    readonly property color thumbHover: white(highContrast ? 0.70 : 0.28)
    readonly property color knob: "#F2F2F4"
    readonly property color scrim: black(0.50)
    readonly property color badgeBed: black(0.62)
    readonly property color shadow: black(0.45)

    // Text and symbols.
    readonly property color text: white(highContrast ? 1.00 : 0.92)
    readonly property color textSoft: white(highContrast ? 0.92 : 0.62)
    readonly property color textFaint: white(highContrast ? 0.75 : 0.40)
    readonly property color textOnBadge: white(1)

    // The one accent, and the warning.
    readonly property color amber: Qt.rgba(1.0, 0.624, 0.263, 1)
    readonly property color amberHover: Qt.lighter(amber, 1.06)
    readonly property color amberPress: Qt.darker(amber, 1.08)
    readonly property color amberSoft: Qt.rgba(1.0, 0.624, 0.263, 0.16)
    readonly property color amberSelection: Qt.rgba(1.0, 0.624, 0.263, 0.36)
    readonly property color amberInk: "#14120E"
    readonly property color danger: "#FF6B5E"
    readonly property color dangerSoft: Qt.rgba(1.0, 0.42, 0.369, 0.12)
    readonly property color dangerHover: Qt.rgba(1.0, 0.42, 0.369, 0.16)
    readonly property color dangerPress: Qt.rgba(1.0, 0.42, 0.369, 0.08)
    readonly property color clear: Qt.rgba(1, 1, 1, 0)
    readonly property color paper: white(1) // of documents that bring their own colours

    // The scrubber.
    readonly property color bars: Qt.rgba(1.0, 0.82, 0.63, 1)
    readonly property color trackVideo: white(0.04)
    readonly property color trackAudio: white(0.06)

    // Type. Regular and semibold are the only weights.
    readonly property string family: Fonts.text
    readonly property string familyDigits: Fonts.digits
    readonly property string familyCode: "monospace"
    readonly property int regular: Font.Normal
    readonly property int semibold: Font.DemiBold
    readonly property int sizeBadgeSmall: 10
    readonly property int sizeFact: 12
    readonly property int lineFact: 16
    readonly property int sizeBody: 13
    readonly property int lineBody: 18
    readonly property int lineDocument: 20 // of what is read at length
    readonly property int sizeSheet: 15
    readonly property int lineSheet: 20
    readonly property int sizePage: 20
    readonly property int linePage: 26
    readonly property int sizeWelcome: 28
    readonly property int lineWelcome: 36
    // The same in the order of Label.Style.
    readonly property var sizes: [sizeBody, sizeFact, sizeBody, sizeSheet, sizePage, sizeWelcome]
    readonly property var lines: [lineBody, lineFact, lineBody, lineSheet, linePage, lineWelcome]
    readonly property FontMetrics metrics: FontMetrics {
        font.family: theme.family
        font.pixelSize: 1000
    }
    readonly property int sizeSymbol: 16
    readonly property int sizeSymbolSmall: 14
    readonly property int sizeSymbolEmpty: 40

    // Shape.
    readonly property int radiusBadge: 5
    readonly property int radiusItem: 6
    readonly property int radiusRow: 7
    readonly property int radiusControl: 7
    readonly property int radiusFan: 8
    readonly property int radiusPicture: 10
    readonly property int radiusCard: 12
    readonly property int radiusMenu: 10
    readonly property int radiusSheet: 14
    readonly property int radiusCapsule: 20
    readonly property int ring: 2        // of focus and of selection
    readonly property int ringGap: 1     // between a tile's well and its ring
    readonly property int tileMargin: 3
    readonly property int shadowDrop: 12
    readonly property int shadowBlur: 32

    // Space, on a grid of four.
    readonly property int grid: 4
    readonly property int gap: 8
    readonly property int pageMargin: 16
    readonly property int tileGap: 14
    readonly property int tileRowGap: 16
    readonly property int blockGap: 26
    readonly property int rowHeight: 28
    readonly property int rowInset: 8
    readonly property int controlHeight: 28
    readonly property int controlPadding: 12
    readonly property int menuItemHeight: 26
    readonly property int chipHeight: 26
    readonly property int capsuleHeight: 40
    readonly property int headerHeight: 44
    readonly property int sheetMargin: 20
    readonly property int windowWidth: 1440
    readonly property int windowHeight: 900
    readonly property int windowLeastWidth: 900
    readonly property int windowLeastHeight: 540
    readonly property int windowMargin: 12  // what floats keeps this distance from the window's edge
    readonly property real beside: 0.7      // the opacity of a count beside its label
    readonly property real dim: 0.5         // the opacity of what is there but cannot be used

    // Motion, in milliseconds. With reduced motion every movement is instant; what waits keeps its time.
    readonly property int quick: reducedMotion ? 0 : 140
    readonly property int room: reducedMotion ? 0 : 220
    readonly property int glow: reducedMotion ? 0 : 600
    readonly property int spring: reducedMotion ? 0 : springSettles
    readonly property int pulse: reducedMotion ? 0 : 900
    readonly property int turn: 1100 // one turn of what shows that work goes on; a sign of life, not a movement
    readonly property int scroll: reducedMotion ? 0 : 220
    readonly property int easeOut: Easing.OutCubic
    readonly property int easeInOut: Easing.InOutSine
    readonly property real paletteScale: 0.98
    readonly property int hintDelay: 600
    readonly property int patience: 300 // that something may take before there is a sign of it

    // The spring of the design: how long one swing would take undamped, in seconds, and how much of it is damped away.
    readonly property real springResponse: 0.35
    readonly property real springDamping: 0.8
    readonly property int springSettles: Math.round(Math.log(1000) / (springDamping * angularFrequency) * 1000)
    readonly property var springCurve: curveOfSpring()
    readonly property real angularFrequency: 2 * Math.PI / springResponse

    function white(alpha: real): color { return Qt.rgba(1, 1, 1, alpha) }
    function black(alpha: real): color { return Qt.rgba(0, 0, 0, alpha) }

    // The spring's place at a time in seconds, from 0 at rest to 1, and its speed.
    function springAt(seconds: real): real {
        const decay = springDamping * angularFrequency
        const swing = angularFrequency * Math.sqrt(1 - springDamping * springDamping)
        return 1 - Math.exp(-decay * seconds) * (Math.cos(swing * seconds) + decay / swing * Math.sin(swing * seconds))
    }

    function springSpeedAt(seconds: real): real {
        const decay = springDamping * angularFrequency
        const swing = angularFrequency * Math.sqrt(1 - springDamping * springDamping)
        return Math.exp(-decay * seconds) * (swing + decay * decay / swing) * Math.sin(swing * seconds)
    }

    // The same as a chain of cubic curves for Easing.BezierSpline: each piece meets the spring's place and speed at its
    // two ends. An ordinary animation can then follow it, and be switched off with all others. Qt 6.4 writes beyond its
    // memory when a curve has more than ten pieces.
    function curveOfSpring(): var {
        const pieces = 10 // Qt 6.4 keeps room for as many, and writes past it without a check
        const whole = springSettles / 1000
        const step = whole / pieces
        const curve = []
        for (let i = 0; i < pieces; ++i) {
            const from = i * step
            const to = (i + 1) * step
            const third = step / 3
            const end = i + 1 === pieces ? 1 : springAt(to)
            curve.push((from + third) / whole, springAt(from) + springSpeedAt(from) * third)
            curve.push((to - third) / whole, end - springSpeedAt(to) * third)
            curve.push((i + 1) / pieces, end)
        }
        return curve
    }
}
