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

    // The one world in which scripts run. Written with a small letter too, its owner's name is ambiguous to qmllint alone.
    // qmllint disable unqualified
    readonly property int world: WebEngineScript.ApplicationWorld
    // qmllint enable unqualified

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
        url = "about:blank"
    }

    function scrollBy(parts: real) {
        runJavaScript("scrollBy({ top: innerHeight * " + parts + ", behavior: 'smooth' })", world)
    }

    function scrollToEnd(end: bool) {
        runJavaScript("scrollTo({ top: " + (end ? "document.documentElement.scrollHeight" : "0") + ", behavior: 'smooth' })", world)
    }

    activeFocusOnPress: false // the keys are the room's
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
    onLoadingChanged: info => {
        if (info.status !== WebEngineView.LoadSucceededStatus || !requests.isSamePage(info.url, requests.page))
            return
        if (firstPicture.awaited && !shown)
            firstPicture.begin()
        else
            shown = true
    }
    onNavigationRequested: request => {
        const wanted = request.url.toString() === "about:blank" || requests.isSamePage(request.url, requests.page)
        if (request.isMainFrame && !wanted)
            request.reject()
    }
    onRenderProcessTerminated: {
        firstPicture.stop()
        crashed = true
    }
    onContextMenuRequested: request => request.accepted = true
    onJavaScriptDialogRequested: request => request.accepted = true
    onFileDialogRequested: request => request.accepted = true
    onTooltipRequested: request => request.accepted = true
}
