// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebVideoPage.h"

#include "platform/TemporaryFolder.h"

#include <QSaveFile>

namespace lumbra {

QString webVideoPage(const QUrl& video, bool autoplay) {
    QString address = video.toString(QUrl::FullyEncoded);
    // The one character that an address may hold and an attribute would read as something else: "&copy.webm".
    address.replace(u'&', QLatin1String("%26"));
    return QStringLiteral("<html><body style=\"margin:0;background:transparent;display:flex;align-items:center;"
                          "justify-content:center;height:100vh\">\n<video src=\"")
           + address + QStringLiteral("\" controls ") + (autoplay ? QStringLiteral("autoplay") : QString())
           + QStringLiteral(" style=\"max-width:100%;max-height:100%\"></video>\n</body></html>");
}

Location WebVideoPage::file() {
    return temporaryFolder().child(QStringView(u"folia-preview.html"));
}

void WebVideoPage::setVideo(const QUrl& video) {
    if (m_video == video)
        return;
    m_video = video;
    Q_EMIT changed();
}

void WebVideoPage::setAutoplay(bool autoplay) {
    if (m_autoplay == autoplay)
        return;
    m_autoplay = autoplay;
    Q_EMIT changed();
}

void WebVideoPage::write() const {
    QSaveFile page(file().toString());
    if (!page.open(QIODevice::WriteOnly))
        return;
    page.write(webVideoPage(m_video, m_autoplay).toUtf8());
    page.commit();
}

} // namespace lumbra
