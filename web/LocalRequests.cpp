// SPDX-License-Identifier: GPL-3.0-or-later
#include "LocalRequests.h"

#include <QDir>
#include <QQuickWebEngineProfile>

namespace lumbra {

namespace {

constexpr QUrl::FormattingOptions withoutFragment = QUrl::RemoveFragment | QUrl::NormalizePathSegments;

bool isBlank(const QUrl& url) {
    return url.scheme() == QLatin1String("about");
}

} // namespace

bool LocalRequests::guard(QObject* profile) {
    auto* const known = qobject_cast<QQuickWebEngineProfile*>(profile);
    if (known)
        known->setUrlRequestInterceptor(this);
    return known != nullptr;
}

void LocalRequests::interceptRequest(QWebEngineUrlRequestInfo& request) {
    const QUrl url = request.requestUrl();
    const bool isPage = request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
    const bool isWanted = isPage ? isBlank(url) || isSamePage(url, m_page) : isInside(url, m_folder);
    request.block(!isWanted);
}

bool LocalRequests::isInside(const QUrl& url, const QUrl& folder) {
    if (url.scheme() == QLatin1String("data") || isBlank(url)) // what the page holds itself
        return true;
    if (!url.isLocalFile() || !url.host().isEmpty() || !folder.isLocalFile())
        return false;
    const QString path = QDir::cleanPath(url.toLocalFile());
    const QString below = QDir::cleanPath(folder.toLocalFile());
    return path.startsWith(below.endsWith(u'/') ? below : below + u'/');
}

bool LocalRequests::isSamePage(const QUrl& url, const QUrl& page) {
    return url.isLocalFile() && url.adjusted(withoutFragment) == page.adjusted(withoutFragment);
}

} // namespace lumbra
