// One web view: shows a single local page without scripts and without the network. Made only through WebViews, since
// what it imports is loaded with it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtWebEngine
import Lumbra.Look
import Lumbra.Web

WebEngineView {
    id: view

    property bool crashed: false
    property bool shown: false // the page that was asked for last is there, and its film with a picture
    readonly property bool hasSelection: copying.enabled
    readonly property WebEngineAction copying: action(WebEngineView.Copy) // asked only whether there is something to copy

    readonly property int mostCharacters: 1 << 24 // of a selection

    // The one world in which scripts run. Written with a small letter too, its owner's name is ambiguous to qmllint alone.
    // qmllint disable unqualified
    readonly property int world: WebEngineScript.ApplicationWorld
    // qmllint enable unqualified

    // A link that leads to another page was followed.
    signal linkActivated(link: string)

    // `steady`: the same page that is loaded anew shows what it was until then. `film`: the page plays one, and until
    // that has a picture there is nothing to see.
    function open(page: url, folder: url, paper: color, steady: bool, film: bool) {
        shown = shown && steady && url.toString() === page.toString()
        firstPicture.awaited = film
        requests.page = page
        requests.folder = folder
        backgroundColor = paper
        if (url.toString() === page.toString())
            reload()
        else
            url = page
    }

    // Whatever is shown, or plays, ends.
    function rest() {
        shown = false
        firstPicture.stop()
        requests.page = ""
        url = "about:blank"
    }

    // The view's own action wants the focus, which is the room's. A frame that has never had it tells of no selection.
    function selectAll() { runJavaScript("focus(); getSelection().selectAllChildren(document.body)", world) }

    // As in other documents, whether the page has the focus or not.
    function colourSelection() {
        const ink = Theme.amberSelection
        const colour = [ink.r, ink.g, ink.b].map(part => Math.round(255 * part)).join(" ") + " / " + ink.a
        runJavaScript("(sheet => { sheet.replaceSync('::selection { background: rgb(" + colour + ") }');"
                      + "document.adoptedStyleSheets = [sheet] })(new CSSStyleSheet())", world)
    }

    // Gives what is selected to `then`, as a text.
    function readSelection(then: var) {
        runJavaScript("getSelection().toString().slice(0, " + mostCharacters + ")", world, then)
    }

    function scrollBy(parts: real) {
        runJavaScript("scrollBy({ top: innerHeight * " + parts + ", behavior: 'smooth' })", world)
    }

    function scrollToEnd(end: bool) {
        runJavaScript("scrollTo({ top: " + (end ? "document.documentElement.scrollHeight" : "0") + ", behavior: 'smooth' })", world)
    }

    activeFocusOnPress: true // or it hears of no press at all
    backgroundColor: Theme.clear
    opacity: shown ? 1 : 0
    profile: WebEngineProfile {
        offTheRecord: true
        httpCacheType: WebEngineProfile.NoCache
    }
    settings {
        javascriptEnabled: false
        javascriptCanOpenWindows: false
        localContentCanAccessRemoteUrls: false
        localContentCanAccessFileUrls: true
        playbackRequiresUserGesture: false
        localStorageEnabled: false
        hyperlinkAuditingEnabled: false
        dnsPrefetchEnabled: false
        webGLEnabled: false
        pluginsEnabled: false
        pdfViewerEnabled: false
        errorPageEnabled: false
        focusOnNavigationEnabled: false
        fullScreenSupportEnabled: false
        autoLoadIconsForPage: false
        touchIconsEnabled: false
    }

    Accessible.ignored: true

    LocalRequests {
        id: requests
    }

    // A page without scripts can't tell when its film has a picture.
    Timer {
        id: firstPicture

        property bool awaited: false
        property bool isThere: false
        property int looksLeft: 0
        readonly property int mostLooks: 250 // a film that has none by then is seen as it is

        function begin() {
            isThere = false
            looksLeft = mostLooks
            restart()
        }

        interval: 20
        repeat: true
        onTriggered: {
            if (isThere || --looksLeft <= 0) { // one look later, when it is drawn too
                stop()
                view.shown = true
                return
            }
            view.runJavaScript("(film => !film || film.error !== null || film.readyState >= 2)(document.querySelector('video'))",
                               view.world, answer => isThere = answer === true)
        }
    }

    Component.onCompleted: crashed = !requests.guard(profile) // unguarded it loads nothing
    onParentChanged: if (!parent) rest()
    // The keys are for whoever shows the page: they go on from there.
    onActiveFocusChanged: if (activeFocus) Qt.callLater(leaveKeys)
    function leaveKeys() { if (activeFocus && parent) parent.forceActiveFocus(Qt.OtherFocusReason) }
    onLoadingChanged: info => {
        if (info.status !== WebEngineView.LoadSucceededStatus || !requests.isSamePage(info.url, requests.page))
            return
        if (!firstPicture.awaited)
            colourSelection()
        if (firstPicture.awaited && !shown)
            firstPicture.begin()
        else
            shown = true
    }
    onNavigationRequested: request => {
        const rests = requests.page.toString() === ""
        const wanted = rests ? request.url.toString() === "about:blank" : requests.isSamePage(request.url, requests.page)
        if (!request.isMainFrame || wanted)
            return
        request.reject()
        if (request.navigationType === WebEngineNavigationRequest.LinkClickedNavigation)
            linkActivated(request.url.toString())
    }
    onNewWindowRequested: request => { if (request.userInitiated) linkActivated(request.requestedUrl.toString()) }
    onRenderProcessTerminated: {
        firstPicture.stop()
        crashed = true
    }
    onContextMenuRequested: request => request.accepted = true
    onJavaScriptDialogRequested: request => request.accepted = true
    onFileDialogRequested: request => request.accepted = true
    onTooltipRequested: request => request.accepted = true
}
