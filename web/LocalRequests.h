// Lets a web view reach nothing but the one page that it shows and the files that this may use: no network, no other
// page, whatever the page asks for.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>
#include <QtQml/qqmlregistration.h>

namespace lumbra {

class LocalRequests : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
    QML_ELEMENT

    // The one page, and the folder in and below which the files are that it may use.
    Q_PROPERTY(QUrl page MEMBER m_page NOTIFY changed)
    Q_PROPERTY(QUrl folder MEMBER m_folder NOTIFY changed)

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    // From now on every request of the profile is looked at. False when it is no profile: then nothing may be loaded.
    Q_INVOKABLE bool guard(QObject* profile);

    void interceptRequest(QWebEngineUrlRequestInfo& request) override;

    // What a page may be made of.
    static bool isInside(const QUrl& url, const QUrl& folder);

    // The same page, wherever in it.
    Q_INVOKABLE static bool isSamePage(const QUrl& url, const QUrl& page);

Q_SIGNALS:
    void changed();

private:
    QUrl m_page;
    QUrl m_folder;
};

} // namespace lumbra
