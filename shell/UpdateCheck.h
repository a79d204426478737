// Looks for a newer version when the user asks, where whoever made the package has said which feed tells of them. It
// asks nothing by itself, and opens the page of a new version; it installs nothing. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Appcast.h"
#include "platform/Location.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

namespace lumbra {

class UpdateCheck : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes its one.")

    Q_PROPERTY(bool canCheck READ canCheck NOTIFY canCheckChanged)
    // What the check came to, for the alert; the title is empty while there is nothing to say.
    Q_PROPERTY(QString title READ title NOTIFY resultChanged)
    Q_PROPERTY(QString message READ message NOTIFY resultChanged)
    Q_PROPERTY(bool offers READ offers NOTIFY resultChanged)

public:
    // The feed of the installation that the program is part of. Absent for a program in a build folder, and where the
    // package names none.
    static std::optional<QUrl> feedFor(const Location& program);

    // Without a feed it never can check.
    UpdateCheck(std::optional<QUrl> feed, QVersionNumber installed, QObject* parent = nullptr);

    // False while a check is under way, too.
    bool canCheck() const { return m_feed && !m_checking; }

    QString title() const { return m_title; }
    QString message() const { return m_message; }
    bool offers() const { return m_offered.has_value(); } // a page to open

    Q_INVOKABLE void check();

    // The user has read what the check came to; the second also wants the new version.
    Q_INVOKABLE void dismiss();
    Q_INVOKABLE void download();

Q_SIGNALS:
    void canCheckChanged();
    void resultChanged();

private:
    void finish(QNetworkReply* reply);
    void tell(const QString& title, const QString& message, std::optional<Appcast::Version> offered = {});
    void setChecking(bool checking);

    const std::optional<QUrl> m_feed;
    const QVersionNumber m_installed;
    QNetworkAccessManager* m_network = nullptr; // made when first needed
    bool m_checking = false;
    QString m_title;
    QString m_message;
    std::optional<Appcast::Version> m_offered;
};

} // namespace lumbra
