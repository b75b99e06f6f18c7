import QtQuick
import QtQuick.Controls
import QtTest
import Korvane.Style
import Korvane.Window
import Korvane.Theme

Item {
    id: root
    width: 700
    height: 500

    Button { id: button; property int presses: 0; text: "Go"; onClicked: ++presses }
    BarChart {
        id: chart
        y: 60
        width: 500
        height: 200
        bars: [{ label: "a", share: 1, text: "a: 10" }, { label: "b", share: 0.5, text: "b: 5" }, { label: "c", share: 0, text: "c: 0" }]
        ticks: [{ text: "0", share: 0 }, { text: "10", share: 1 }]
    }
    ConfirmSheet { id: sheet; parent: root; property int answers: 0; onAccepted: ++answers }
    StackedBar { id: bar; y: 300; width: 400; parts: [{ title: "x".repeat(300), text: "1 KB", share: 0.999 }, { title: "b", text: "1 KB", share: 0.001 }] }

    Item {
        LayoutMirroring.enabled: true
        LayoutMirroring.childrenInherit: true
        Label { id: mirrored; width: 300; text: "letters.txt" }
    }

    TestCase {
        name: "Components"
        when: windowShown

        function test_enterAndSpacePressAButton() {
            button.presses = 0
            button.forceActiveFocus()
            keyClick(Qt.Key_Return)
            keyClick(Qt.Key_Enter)
            keyClick(Qt.Key_Space)
            compare(button.presses, 3)
            keyClick(Qt.Key_Return, Qt.ControlModifier) // that is the window's
            compare(button.presses, 3)
        }

        function test_textStandsWhereTheWindowBegins() {
            compare(mirrored.effectiveHorizontalAlignment, Text.AlignRight)
        }

        function test_theFirstAnswerOfASheetIsNo_data() {
            return [{ tag: "to the Bin", permanent: false }, { tag: "for good", permanent: true }]
        }
        function test_theFirstAnswerOfASheetIsNo(row) {
            sheet.answers = 0
            for (const key of [Qt.Key_Return, Qt.Key_Space, Qt.Key_Escape]) {
                sheet.ask({ question: "Sure?", consequence: "Then so.", action: "Do it", permanent: row.permanent, count: "3", size: "1 MB", warning: "" })
                tryCompare(sheet, "opened", true)
                compare(sheet.danger, row.permanent)
                keyClick(key)
                tryCompare(sheet, "visible", false)
            }
            compare(sheet.answers, 0)
        }

        function test_theChartIsReadWithTheArrowKeys() {
            chart.forceActiveFocus()
            chart.current = -1
            keyClick(Qt.Key_Right)
            keyClick(Qt.Key_Right)
            compare(chart.Accessible.description, "b: 5")
            for (let i = 0; i < 9; ++i)
                keyClick(Qt.Key_Right)
            compare(chart.current, 2)
        }

        function test_aShareStaysInsideItsBar() {
            verify(bar.childrenRect.width <= bar.width)
        }

        // WCAG 2.1: 4.5 to 1 for text
        function luminance(c) {
            const part = v => v <= 0.03928 ? v / 12.92 : Math.pow((v + 0.055) / 1.055, 2.4)
            return 0.2126 * part(c.r) + 0.7152 * part(c.g) + 0.0722 * part(c.b)
        }
        function contrast(a, b) {
            const x = luminance(Qt.color(a)), y = luminance(Qt.color(b))
            return (Math.max(x, y) + 0.05) / (Math.min(x, y) + 0.05)
        }
        function test_textStandsOut_data() {
            return [{ tag: "light", mode: Appearance.Light }, { tag: "dark", mode: Appearance.Dark }]
        }
        function test_textStandsOut(row) {
            Appearance.mode = row.mode
            for (const ground of ["window", "sidebar", "surface", "raised", "hover", "selected", "groupRow", "sidebarHover"])
                for (const ink of ["text", "textMuted", "textFaint", "accentText"])
                    verify(contrast(Theme[ground], Theme[ink]) >= 4.5, ink + " on " + ground + ": " + contrast(Theme[ground], Theme[ink]).toFixed(2))
            for (const ground of ["accent", "accentHover", "accentPressed"])
                verify(contrast(Theme[ground], Theme.accentInk) >= 4.5, ground + ": " + contrast(Theme[ground], Theme.accentInk).toFixed(2))
            for (const ground of ["danger", "dangerHover", "dangerPressed"])
                verify(contrast(Theme[ground], Theme.dangerInk) >= 4.5, ground + ": " + contrast(Theme[ground], Theme.dangerInk).toFixed(2))
            for (let i = 0; i < 3; ++i)
                for (const ground of [Theme.riskFill[i], Theme.surface, Theme.window, Theme.raised])
                    verify(contrast(ground, Theme.riskInk[i]) >= 4.5, "risk " + i + ": " + contrast(ground, Theme.riskInk[i]).toFixed(2))
            Appearance.mode = Appearance.System
        }
    }
}
