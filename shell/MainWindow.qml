// The one window: the sidebar and the page side by side, and above them whatever takes the window over for a while.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic as Controls
import Lumbra.Look
import Lumbra.Browsing
import Lumbra.Shell

Controls.ApplicationWindow {
    id: window

    required property QtObject library
    required property Browser browser
    required property BrowserCommands commands
    required property Sidebar sidebar
    required property Frame frame
    required property Onboarding onboarding
    required property WindowPanels panels
    required property TransferProgress transfer

    // The window's own sizes: given by the product.
    readonly property int usualWidth: 1440
    readonly property int usualHeight: 900
    readonly property int leastSidebar: 220
    readonly property int idealSidebar: 264
    readonly property int widestSidebar: 380

    title: browser.subtitle === "" ? browser.title : browser.title + " — " + browser.subtitle
    width: usualWidth
    height: usualHeight
    minimumWidth: 900
    minimumHeight: 540
    color: Theme.window
    menuBar: MainMenu {
        library: window.library
        commands: window.commands
    }

    SplitView {
        anchors.fill: parent

        SidebarView {
            Controls.SplitView.minimumWidth: window.leastSidebar
            Controls.SplitView.preferredWidth: window.idealSidebar
            Controls.SplitView.maximumWidth: window.widestSidebar
            sidebar: window.sidebar
        }
        BrowserView {
            Controls.SplitView.fillWidth: true
            browser: window.browser
        }
    }

    TransferView {
        transfer: window.transfer
        toast: toastView
    }
    ToastView {
        id: toastView
        toasts: window.frame.toasts
    }
    NameSheet { prompts: window.frame.prompts }
    ConfirmAlert { confirmations: window.frame.confirmations }
    WindowPanel { panels: window.panels }
    ErrorAlert { frame: window.frame }
    OnboardingSheet { onboarding: window.onboarding }
}
