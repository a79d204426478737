// One tile in a window of its own, used as a person would.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browsing/browser/PageRow.h"
#include "support/QmlWindow.h"

Q_IMPORT_QML_PLUGIN(Lumbra_MediaPlugin)
Q_IMPORT_QML_PLUGIN(Lumbra_BrowsingPlugin)

namespace lumbra {

inline Asset image(const char* path) {
    return {.url = Location(QByteArray(path)), .kind = AssetKind::image, .starred = {}};
}

inline PageCell folderCell(qint64 count, const Assets& newest) {
    PageCell cell;
    cell.kind = PageCell::Kind::folder;
    cell.url = Location(QByteArray("/library/renders"));
    cell.name = cell.url.name();
    cell.count = count;
    for (const Asset& asset : newest)
        cell.newest.append(QVariant::fromValue(asset));
    return cell;
}

inline PageCell stackCell(qint64 count) {
    PageCell cell;
    cell.kind = PageCell::Kind::stack;
    cell.url = Location(QByteArray("/library/renders"));
    cell.asset = image("/library/renders/5.png");
    cell.caption = QStringLiteral("film › renders");
    cell.count = count;
    return cell;
}

inline PageCell assetCell(bool selected = false, std::optional<Date> starred = {}) {
    PageCell cell;
    cell.kind = PageCell::Kind::asset;
    cell.asset = image("/library/a.png");
    cell.asset.starred = starred;
    cell.url = cell.asset.url;
    cell.name = cell.url.name();
    cell.selected = selected;
    return cell;
}

inline PageCell fileCell(const Location& file, AssetKind kind) {
    PageCell cell = assetCell();
    cell.asset = {.url = file, .kind = kind, .modified = Date{1}, .starred = {}};
    cell.url = file;
    cell.name = file.name();
    return cell;
}

// One tile, `size` points wide, the pointer elsewhere.
class Tile {
public:
    Tile(const char* type, const PageCell& cell, int size = 200)
        : m_window((QByteArray("property var cell\n") + type
                    + " { objectName: 'tile'; cell: parent ? parent.cell : null; metrics: TileMetrics { size: "
                    + QByteArray::number(size) + " } }")
                       .constData(),
                   "import Lumbra.Browsing\n", {{QStringLiteral("cell"), QVariant::fromValue(cell)}}) {
        pointElsewhere();
    }

    void setCell(const PageCell& cell) { m_window.root()->setProperty("cell", QVariant::fromValue(cell)); }

    QmlWindow& window() { return m_window; }
    void point(int x, int y) { QTest::mouseMove(m_window.window(), QPoint(x, y)); }
    void pointElsewhere() { point(590, 390); }
    QQuickItem* item() { return m_window.find<QQuickItem>("tile"); }

    // What is seen of a type of ours.
    QList<QQuickItem*> all(const QByteArray& type) {
        QList<QQuickItem*> found;
        collect(item(), type, found);
        return found;
    }

    QStringList texts() {
        QStringList texts;
        for (const QQuickItem* label : all("Label"))
            texts << label->property("text").toString();
        return texts;
    }

    QStringList symbols() {
        QStringList names;
        for (const QQuickItem* symbol : all("Symbol"))
            names << symbol->property("name").toString();
        return names;
    }

    // What the tool tips say that are up or about to be.
    QStringList tips() {
        QStringList texts;
        for (const QQuickItem* hint : all("Hint"))
            if (hint->property("wanted").toBool())
                texts << hint->property("text").toString();
        return texts;
    }

private:
    static void collect(QQuickItem* item, const QByteArray& type, QList<QQuickItem*>& found) {
        if (!item->isVisible())
            return;
        QByteArray name = item->metaObject()->className();
        name.replace("lumbra::", "");
        if (name == type || name.startsWith(type + "_QML"))
            found.append(item);
        for (QQuickItem* child : item->childItems())
            collect(child, type, found);
    }

    QmlWindow m_window;
};

} // namespace lumbra
