// SPDX-License-Identifier: GPL-3.0-or-later
#include "StateDump.h"

#include "browsing/browser/Browser.h"
#include "browsing/sidebar/SidebarRows.h"
#include "library/Library.h"
#include "media/ThumbnailPicture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSet>

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

// How many assets each visible project holds at any depth.
QJsonObject fileCounts(const Library& library) {
    QJsonObject counts;
    for (const Project& project : library.visibleProjects()) {
        qint64 count = 0;
        for (const auto& folder : library.index().foldersUnder(project.url))
            count += qint64(folder->size());
        counts.insert(project.name, count);
    }
    return counts;
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

QJsonObject rectangle(const QRectF& rect) {
    return {{QStringLiteral("x"), rect.x()},
            {QStringLiteral("y"), rect.y()},
            {QStringLiteral("width"), rect.width()},
            {QStringLiteral("height"), rect.height()}};
}

// The name of a view's type, without what the engine appends to it.
QByteArray typeName(const QQuickItem& item) {
    const QByteArray name = item.metaObject()->className();
    const auto end = name.indexOf("_QML");
    return end < 0 ? name : name.first(end);
}

// The items of a list's content that stand for nothing now: delegates kept to be used again lie where they last were,
// and only the list knows that they are not drawn.
QSet<const QQuickItem*> pooledItems(const QQuickItem& content) {
    QSet<const QQuickItem*> pooled;
    auto* const list = content.parentItem();
    if (!list || !list->inherits("QQuickItemView"))
        return pooled;
    QSet<const QQuickItem*> live;
    for (const QQuickItem* child : content.childItems()) {
        const QPointF middle = child->mapToItem(&content, QPointF(child->width() / 2, child->height() / 2));
        int index = -1;
        QMetaObject::invokeMethod(list, "indexAt", Q_RETURN_ARG(int, index), Q_ARG(double, middle.x()),
                                  Q_ARG(double, middle.y()));
        QQuickItem* item = nullptr;
        QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, index));
        live.insert(item);
    }
    for (const QQuickItem* child : content.childItems())
        if (!live.contains(child) && child->metaObject()->indexOfProperty("row") >= 0)
            pooled.insert(child);
    return pooled;
}

// What the scene shows, by kind of item.
class Scene {
public:
    explicit Scene(const QQuickWindow& window) {
        visit(*window.contentItem(), QRectF(QPointF(), QSizeF(window.size())));
    }

    QJsonArray tiles;
    QJsonArray sidebar;
    QJsonArray controls;
    bool settled = true; // no thumbnail in view is waited for

private:
    // Answers whether the item or one below it shows a thumbnail's picture.
    bool visit(const QQuickItem& item, QRectF clip) {
        if (!item.isVisible() || item.opacity() <= 0)
            return false;
        const QRectF whole = item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
        if (item.clip())
            clip &= whole;
        bool hasPicture = false;
        if (const auto* picture = qobject_cast<const ThumbnailPicture*>(&item); picture && whole.intersects(clip)) {
            hasPicture = picture->hasImage();
            settled = settled && (hasPicture || picture->failed());
        }
        const auto pooled = pooledItems(item);
        for (const QQuickItem* child : item.childItems())
            if (!pooled.contains(child))
                hasPicture = visit(*child, clip) || hasPicture;
        if (const QRectF seen = whole & clip; !seen.isEmpty())
            add(item, seen, hasPicture);
        return hasPicture;
    }

    void add(const QQuickItem& item, const QRectF& seen, bool hasPicture) {
        const QByteArray type = typeName(item);
        if (type == "AssetTile" || type == "FolderTile" || type == "StackTile")
            addTile(item.property("cell").value<PageCell>(), rectangle(seen), hasPicture);
        else if (type == "SidebarRow")
            addRow(item.property("row").value<SidebarRow>(), rectangle(seen));
        else if (!item.objectName().isEmpty())
            addControl(item, rectangle(seen));
    }

    void addTile(const PageCell& cell, QJsonObject facts, bool hasPicture) {
        const auto kind = cell.isAsset()   ? QStringLiteral("assetTile")
                          : cell.isStack() ? QStringLiteral("stackTile")
                                           : QStringLiteral("folderTile");
        facts.insert(QStringLiteral("type"), kind);
        facts.insert(QStringLiteral("path"), cell.url.toString());
        facts.insert(QStringLiteral("name"), cell.name);
        facts.insert(QStringLiteral("selected"), cell.selected);
        facts.insert(QStringLiteral("hasPicture"), hasPicture);
        tiles.append(facts);
    }

    void addRow(const SidebarRow& row, QJsonObject facts) {
        facts.insert(QStringLiteral("title"), row.title);
        facts.insert(QStringLiteral("type"), row.typeName());
        facts.insert(QStringLiteral("selected"), row.selected);
        sidebar.append(facts);
    }

    void addControl(const QQuickItem& item, QJsonObject facts) {
        facts.insert(QStringLiteral("name"), item.objectName());
        facts.insert(QStringLiteral("text"), item.property("text").toString());
        facts.insert(QStringLiteral("enabled"), item.isEnabled());
        controls.append(facts);
    }
};

} // namespace

StateDump::StateDump(const Library& library, const Browser& browser, QQuickWindow& window, const QElapsedTimer& started,
                     QObject* parent)
    : QObject(parent), m_library(library), m_browser(browser), m_window(window) {
    // Counted when it happens, not when the main thread hears of it, and of what the window holds by now.
    connect(
        &window, &QQuickWindow::afterSynchronizing, this, [this] { m_isDrawn = true; }, Qt::DirectConnection);
    connect(
        &window, &QQuickWindow::frameSwapped, this,
        [this, started] {
            if (m_isDrawn && m_firstFrame < 0)
                m_firstFrame = double(started.nsecsElapsed()) / 1e6;
        },
        Qt::DirectConnection);
    connect(&library, &Library::revisionChanged, this, [this] { m_summed = false; });
    connect(&library, &Library::derivedPublished, this, [this] { m_summed = true; });
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
    const Scene scene(m_window);
    const auto toast = m_library.toast();
    const bool complete = m_firstFrame >= 0 && m_summed && !m_library.indexing() && m_browser.loaded() && scene.settled;
    return {{QStringLiteral("place"), placeText(m_library.place())},
            {QStringLiteral("title"), m_browser.title()},
            {QStringLiteral("subtitle"), m_browser.subtitle()},
            {QStringLiteral("status"), m_browser.status()},
            {QStringLiteral("loaded"), m_browser.loaded()},
            {QStringLiteral("indexing"), m_library.indexing()},
            {QStringLiteral("indexed"), qint64(m_library.index().count())},
            {QStringLiteral("revision"), m_library.revision()},
            {QStringLiteral("projects"), projectNames(m_library.visibleProjects())},
            {QStringLiteral("files"), fileCounts(m_library)},
            {QStringLiteral("rows"), pageRows(*m_browser.rows())},
            {QStringLiteral("items"), scene.tiles},
            {QStringLiteral("sidebar"), scene.sidebar},
            {QStringLiteral("controls"), scene.controls},
            {QStringLiteral("toast"), toast ? toast->text : QString()},
            {QStringLiteral("error"), m_library.lastError().value_or(QString())},
            {QStringLiteral("onboarding"), m_library.onboarding()},
            {QStringLiteral("playing"), m_library.playing().has_value()},
            {QStringLiteral("firstFrameMs"), m_firstFrame.load()},
            {QStringLiteral("complete"), complete}};
}

} // namespace lumbra
