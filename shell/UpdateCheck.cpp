// SPDX-License-Identifier: GPL-3.0-or-later
#include "UpdateCheck.h"

#include <QDesktopServices>
#include <QFile>
#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <chrono>

namespace lumbra {

namespace {

constexpr std::chrono::milliseconds longestCheck{15'000};
constexpr qint64 largestFeed = 1 << 20;         // bytes
constexpr qint64 largestInformation = 64 << 10; // bytes

// What tells of programs to install must come from whom it says it comes from, or from this machine.
bool isTrusted(const QUrl& url) {
    return url.scheme() == QLatin1String("https")
           || (url.scheme() == QLatin1String("http") && QHostAddress(url.host()).isLoopback());
}

} // namespace

std::optional<QUrl> UpdateCheck::feedFor(const Location& program) {
    QFile file(program.parent().parent().child("share/lumbra/bundle.json").toString());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject information = QJsonDocument::fromJson(file.read(largestInformation)).object();
    const QUrl url(information.value(QLatin1String("SUFeedURL")).toString(), QUrl::StrictMode);
    return url.isValid() && isTrusted(url) ? std::optional(url) : std::nullopt;
}

UpdateCheck::UpdateCheck(std::optional<QUrl> feed, QVersionNumber installed, QObject* parent)
    : QObject(parent), m_feed(std::move(feed)), m_installed(std::move(installed)) {}

void UpdateCheck::check() {
    if (!canCheck())
        return;
    setChecking(true);
    QNetworkRequest request(*m_feed);
    request.setTransferTimeout(int(longestCheck.count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    QNetworkReply* const reply = m_network->get(request);
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64) {
        if (received > largestFeed)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] { finish(reply); });
}

void UpdateCheck::finish(QNetworkReply* reply) {
    reply->deleteLater();
    setChecking(false);
    const bool arrived = reply->error() == QNetworkReply::NoError;
    const auto newest = arrived ? Appcast::newest(reply->readAll()) : std::nullopt;
    if (!newest)
        return tell(QStringLiteral("Updates can't be checked"),
                    arrived ? QStringLiteral("The list of versions can't be read.") : reply->errorString());
    if (newest->number <= m_installed)
        return tell(QStringLiteral("Lumbra is up to date"),
                    QStringLiteral("Version %1 is the newest.").arg(m_installed.toString()));
    QString message = QStringLiteral("You have version %1.").arg(m_installed.toString());
    if (!newest->notes.isEmpty())
        message += QStringLiteral("\n\n") + newest->notes;
    tell(QStringLiteral("Lumbra %1 is there").arg(newest->number.toString()), message, newest);
}

void UpdateCheck::dismiss() {
    tell({}, {});
}

void UpdateCheck::download() {
    const auto offered = m_offered;
    dismiss();
    if (offered)
        QDesktopServices::openUrl(offered->page);
}

void UpdateCheck::tell(const QString& title, const QString& message, std::optional<Appcast::Version> offered) {
    m_title = title;
    m_message = message;
    m_offered = std::move(offered);
    Q_EMIT resultChanged();
}

void UpdateCheck::setChecking(bool checking) {
    m_checking = checking;
    Q_EMIT canCheckChanged();
}

} // namespace lumbra
