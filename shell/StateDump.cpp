// SPDX-License-Identifier: GPL-3.0-or-later
#include "StateDump.h"

#include "browsing/browser/Browser.h"
#include "library/Library.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QQuickItem>
#include <QQuickWindow>

namespace lumbra {

namespace {

constexpr qint64 longestRequest = 1024; // bytes
constexpr int mostRows = 200;           // rows of the page that are told of

QString placeText(const Place& place) {
    switch (place.which()) {
    case Place::Case::group:
        return QStringLiteral("group:") + place.groupId()->toString(QUuid::WithoutBraces);
    case Place::Case::folder:
        return QStringLiteral("folder:") + place.folderUrl()->toString();
    case Place::Case::starred:
        return QStringLiteral("starred");
    case Place::Case::recent:
        return QStringLiteral("recent");
    case Place::Case::tidy:
        return QStringLiteral("tidy");
    }
    return {};
}

QJsonArray projectNames(const QList<Project>& projects) {
    QJsonArray names;
    for (const Project& project : projects)
        names.append(project.name);
    return names;
}

QJsonArray pageRows(const PageRows& rows) {
    QJsonArray all;
    for (int row = 0; row < std::min(rows.rowCount(), mostRows); ++row) {
        const auto value = rows.data(rows.index(row), PageRows::rowRole).value<PageRow>();
        QJsonArray cells;
        for (const PageCell& cell : value.cells)
            if (cell.kind != PageCell::Kind::none)
                cells.append(cell.url.toString());
        all.append(QJsonObject{{QStringLiteral("section"), value.section},
                               {QStringLiteral("more"), value.more},
                               {QStringLiteral("cells"), cells}});
    }
    return all;
}

// What the scene shows, by kind of item.
struct Scene {
    QJsonArray tiles;
    QJsonArray sidebar;
    QJsonArray controls;
    bool settled = true;

    void visit(const QQuickItem& item, QRectF clip) {
        if (!item.isVisible() || item.opacity() <= 0)
            return;
        const QRectF whole = item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
        if (item.clip())
            clip &= whole;
        const QRectF seen = whole & clip;
        if (!item.objectName().isEmpty() && !seen.isEmpty())
            add(item, seen);
        for (const QQuickItem* child : item.childItems())
            visit(*child, clip);
    }

private:
    void add(const QQuickItem& item, const QRectF& seen) {
        const QString name = item.objectName();
        QJsonObject facts{{QStringLiteral("x"), seen.x()},
                          {QStringLiteral("y"), seen.y()},
                          {QStringLiteral("width"), seen.width()},
                          {QStringLiteral("height"), seen.height()}};
        if (name == QStringLiteral("assetTile")) {
            const bool hasPicture = item.property("hasPicture").toBool();
            facts.insert(QStringLiteral("hasPicture"), hasPicture);
            settled = settled && (hasPicture || item.property("settled").toBool());
        }
        if (name.endsWith(QStringLiteral("Tile"))) {
            const QString path = item.property("path").toString();
            facts.insert(QStringLiteral("type"), name);
            facts.insert(QStringLiteral("path"), path);
            facts.insert(QStringLiteral("name"), path.section(u'/', -1));
            tiles.append(facts);
        } else if (name == QStringLiteral("sidebarRow")) {
            facts.insert(QStringLiteral("title"), item.property("title").toString());
            facts.insert(QStringLiteral("type"), item.property("rowType").toString());
            facts.insert(QStringLiteral("selected"), item.property("selected").toBool());
            sidebar.append(facts);
        } else {
            facts.insert(QStringLiteral("name"), name);
            facts.insert(QStringLiteral("text"), item.property("text").toString());
            facts.insert(QStringLiteral("enabled"), item.isEnabled());
            controls.append(facts);
        }
    }
};

} // namespace

StateDump::StateDump(const Library& library, const Browser& browser, QQuickWindow& window, const QElapsedTimer& started,
                     QObject* parent)
    : QObject(parent), m_library(library), m_browser(browser), m_window(window) {
    connect(
        &window, &QQuickWindow::frameSwapped, this,
        [this, started] {
            if (m_firstFrame < 0)
                m_firstFrame = double(started.nsecsElapsed()) / 1e6;
        },
        Qt::DirectConnection); // counted when it happens, not when the main thread hears of it
    connect(&m_server, &QLocalServer::newConnection, this, &StateDump::serve);
}

bool StateDump::listen(const QString& path) {
    QLocalServer::removeServer(path);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    return m_server.listen(path);
}

void StateDump::serve() {
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            while (socket->canReadLine())
                if (socket->readLine().trimmed() == "dump")
                    socket->write(QJsonDocument(dump()).toJson(QJsonDocument::Compact) + '\n');
            if (socket->bytesAvailable() > longestRequest)
                socket->abort();
        });
    }
}

QJsonObject StateDump::dump() const {
    Scene scene;
    scene.visit(*m_window.contentItem(), QRectF(QPointF(), QSizeF(m_window.size())));
    const auto toast = m_library.toast();
    const bool painted = m_firstFrame >= 0;
    return {{QStringLiteral("place"), placeText(m_library.place())},
            {QStringLiteral("title"), m_browser.title()},
            {QStringLiteral("subtitle"), m_browser.subtitle()},
            {QStringLiteral("status"), m_browser.status()},
            {QStringLiteral("loaded"), m_browser.loaded()},
            {QStringLiteral("indexing"), m_library.indexing()},
            {QStringLiteral("indexed"), qint64(m_library.index().count())},
            {QStringLiteral("revision"), m_library.revision()},
            {QStringLiteral("projects"), projectNames(m_library.visibleProjects())},
            {QStringLiteral("rows"), pageRows(*m_browser.rows())},
            {QStringLiteral("items"), scene.tiles},
            {QStringLiteral("sidebar"), scene.sidebar},
            {QStringLiteral("controls"), scene.controls},
            {QStringLiteral("toast"), toast ? toast->text : QString()},
            {QStringLiteral("error"), m_library.lastError().value_or(QString())},
            {QStringLiteral("onboarding"), m_library.onboarding()},
            {QStringLiteral("playing"), m_library.playing().has_value()},
            {QStringLiteral("firstFrameMs"), m_firstFrame.load()},
            {QStringLiteral("complete"), painted && !m_library.indexing() && m_browser.loaded() && scene.settled}};
}

} // namespace lumbra
