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
    property bool shown: false // the page that was asked for last is there

    // `steady`: the same page that is loaded anew shows what it was until then.
    function open(page: url, folder: url, paper: color, steady: bool) {
        shown = shown && steady && url.toString() === page.toString()
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
        url = "about:blank"
    }

    function scrollBy(parts: real) {
        runJavaScript("scrollBy({ top: innerHeight * " + parts + ", behavior: 'smooth' })", WebEngineScript.ApplicationWorld)
    }

    function scrollToEnd(end: bool) {
        runJavaScript("scrollTo({ top: " + (end ? "document.documentElement.scrollHeight" : "0") + ", behavior: 'smooth' })", WebEngineScript.ApplicationWorld)
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

    Component.onCompleted: crashed = !requests.guard(profile) // unguarded it loads nothing
    onParentChanged: if (!parent) rest()
    onLoadingChanged: info => {
        if (info.status === WebEngineView.LoadSucceededStatus && requests.isSamePage(info.url, requests.page))
            shown = true
    }
    onNavigationRequested: request => {
        const wanted = request.url.toString() === "about:blank" || requests.isSamePage(request.url, requests.page)
        if (request.isMainFrame && !wanted)
            request.reject()
    }
    onRenderProcessTerminated: crashed = true
    onContextMenuRequested: request => request.accepted = true
    onJavaScriptDialogRequested: request => request.accepted = true
    onFileDialogRequested: request => request.accepted = true
    onTooltipRequested: request => request.accepted = true
}
